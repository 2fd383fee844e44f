#!/usr/bin/env bash
# Refreshes the language files in translations/ from the texts in src/ZVCore.
#
# Usage: scripts/update-translations.sh
#
# Every translations/ZVCore_<Name>.ts is updated in place: new texts are added as
# unfinished, texts that are gone are dropped, existing translations are kept. Fill in
# the new entries (for example with linguist) before committing; the build compiles the
# files into .qm catalogues.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

lupdate=""
for candidate in lupdate /usr/lib/qt5/bin/lupdate /usr/lib/x86_64-linux-gnu/qt5/bin/lupdate; do
    if command -v "$candidate" >/dev/null 2>&1; then
        lupdate=$(command -v "$candidate")
        break
    fi
done
if [[ -z "$lupdate" ]]; then
    echo "error: lupdate not found; install the Debian package qttools5-dev-tools (apt-get install qttools5-dev-tools)" >&2
    exit 1
fi

shopt -s nullglob
files=("$root"/translations/ZVCore_*.ts)
if (( ${#files[@]} == 0 )); then
    echo "error: no ZVCore_*.ts files in $root/translations" >&2
    exit 1
fi

for ts in "${files[@]}"; do
    "$lupdate" "$root/src/ZVCore" -ts "$ts" -no-obsolete -locations none
done
