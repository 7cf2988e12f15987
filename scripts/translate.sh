#!/usr/bin/env bash
# SPDX-License-Identifier: AGPL-3.0-or-later
# Keeps the translation catalogues in res/translate/ in step with the texts of the sources.
#
#   scripts/translate.sh update   takes new texts into the catalogues and drops vanished ones
#   scripts/translate.sh check    fails if a catalogue is out of date, if an English entry is
#                                 missing, or if an entry in any language lost or gained a "%1"
set -euo pipefail
cd "$(dirname "$0")/.."

source_folders=(app pdf recent tools widgets taskcenter)
catalogues=(res/translate/*.ts)
catalogues=("${catalogues[@]##*/}")

find_lupdate() {
    local candidate
    for candidate in lupdate lupdate6 lupdate-qt6 /usr/lib/qt6/bin/lupdate; do
        if command -v "$candidate" >/dev/null && "$candidate" -version | grep -q ' 6\.'; then
            echo "$candidate"
            return
        fi
    done
    echo "translate.sh: lupdate of Qt 6 was not found" >&2
    return 1
}

# update_catalogues <folder>: brings the catalogues in <folder> up to date.
update_catalogues() {
    local lupdate
    lupdate=$(find_lupdate)
    "$lupdate" -silent -no-obsolete -locations none -source-language zh_CN -I . \
        -extensions cpp,h "${source_folders[@]}" -ts "${catalogues[@]/#/$1/}"
}

check_catalogues() {
    local scratch status=0 name
    scratch=$(mktemp -d)
    trap 'rm -rf "$scratch"' RETURN
    cp res/translate/*.ts "$scratch"
    update_catalogues "$scratch"
    for name in "${catalogues[@]}"; do
        if ! diff -u "res/translate/$name" "$scratch/$name"; then
            echo "res/translate/$name is out of date: run scripts/translate.sh update" >&2
            status=1
        fi
    done
    python3 scripts/translate.py res/translate/*.ts --complete res/translate/plenvo_en.ts ||
        status=1
    return "$status"
}

case "${1-}" in
update) update_catalogues res/translate ;;
check) check_catalogues ;;
*)
    sed -n '2,7s/^# \{0,1\}//p' "$0" >&2
    exit 2
    ;;
esac
