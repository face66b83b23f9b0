#!/bin/bash
# Prints the settings that list the applications given, as they lie beside the program for a first start:
#     scripts/settings_list.sh TEMPLATE... >FOLDER/KDLimitDesk.ini
set -eu
# Told apart by its mark: a path may hold characters that a single-byte code page lacks.
case "$*" in *[!\ -~]*) printf '\xef\xbb\xbf' ;; esac
printf '[KDLIMITDESK]\r\n\r\n[RECENTS]\r\n\r\n[FILES]\r\n'
for template; do
    printf '   File   = %s\r\n' "$template"
done
