# A first start with the samples in a folder of its own, for scripts to source.

# Lays out the folder $1 anew: the program of the build folder $2 with what lies beside it, copies of the samples, and the
# list that a first start shows. To be called in the project's folder.
make_scratch() {
    local scratch=$1 build=$2
    rm -rf "$scratch" && mkdir -p "$scratch/bin" "$scratch/samples" "$scratch/config" "$scratch/pictures" || return 1
    cp samples/*.kdt samples/*.kdt6 samples/*.V* "$scratch/samples/" || return 1
    cp "$build/bin/KDLimitDesk" "$build/bin/Rules.ini" "$scratch/bin/" || return 1
    [ ! -d "$build/bin/help" ] || cp -r "$build/bin/help" "$scratch/bin/" || return 1
    application_list "$scratch" >"$scratch/bin/KDLimitDesk.ini"
}

application_list() {
    local scratch=$1 template
    # Told apart by its mark: a path may hold characters that a single-byte code page lacks.
    case "$scratch" in *[!\ -~]*) printf '\xef\xbb\xbf' ;; esac
    printf '[KDLIMITDESK]\r\n\r\n[RECENTS]\r\n\r\n[FILES]\r\n'
    for template in "$scratch"/samples/*.kdt "$scratch"/samples/*.kdt6; do
        printf '   File   = %s\r\n' "$template"
    done
}
