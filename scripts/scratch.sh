# shellcheck shell=bash
# A first start with the samples in a folder of its own, for scripts to source.

# Lays out the folder $1 anew: the program of the build folder $2 with what lies beside it, copies of the samples, and the
# list that a first start shows. To be called in the project's folder.
make_scratch() {
    local scratch=$1 build=$2
    rm -rf "$scratch" && mkdir -p "$scratch/bin" "$scratch/samples" "$scratch/config" "$scratch/pictures" || return 1
    cp samples/*.kdt samples/*.kdt6 samples/*.V* "$scratch/samples/" || return 1
    cp "$build/bin/KDLimitDesk" "$build/bin/Rules.ini" "$scratch/bin/" || return 1
    [ ! -d "$build/bin/help" ] || cp -r "$build/bin/help" "$scratch/bin/" || return 1
    scripts/settings_list.sh "$scratch"/samples/*.kdt "$scratch"/samples/*.kdt6 >"$scratch/bin/KDLimitDesk.ini"
}
