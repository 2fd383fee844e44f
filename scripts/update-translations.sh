#!/usr/bin/env bash
# Refreshes the language files in translations/ from the texts in src/ZVCore.
#
# Usage: scripts/update-translations.sh [--qt 5|6]
#
# lupdate of Qt 6 is used when it is installed, else Qt 5's; --qt picks one (the .ts
# files both write are read by either lrelease).
#
# Every translations/ZVCore_<Name>.ts is updated in place: new texts are added as
# unfinished, texts that are gone are dropped, existing translations are kept. Fill in
# the new entries (for example with linguist) before committing; the build compiles the
# files into .qm catalogues.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

major=""
if [[ "${1:-}" == --qt ]]; then
    major=${2:-}
    if [[ "$major" != 5 && "$major" != 6 ]]; then
        echo "error: --qt takes 5 or 6" >&2
        exit 2
    fi
fi
qt6=(/usr/lib/qt6/bin/lupdate /usr/lib/qt6/libexec/lupdate)
qt5=(/usr/lib/qt5/bin/lupdate /usr/lib/x86_64-linux-gnu/qt5/bin/lupdate)
case "$major" in
    5) candidates=("${qt5[@]}") ;;
    6) candidates=("${qt6[@]}") ;;
    *) candidates=("${qt6[@]}" "${qt5[@]}") ;;
esac
lupdate=""
for candidate in "${candidates[@]}"; do
    if [[ -x "$candidate" ]]; then
        lupdate=$candidate
        break
    fi
done
if [[ -z "$lupdate" ]]; then
    echo "error: lupdate${major:+ of Qt $major} not found; install qt6-l10n-tools (Qt 6) or qttools5-dev-tools (Qt 5) with apt-get" >&2
    exit 1
fi
echo "==> $("$lupdate" -version 2>&1 | head -n 1)"

shopt -s nullglob
files=("$root"/translations/ZVCore_*.ts)
if (( ${#files[@]} == 0 )); then
    echo "error: no ZVCore_*.ts files in $root/translations" >&2
    exit 1
fi

for ts in "${files[@]}"; do
    "$lupdate" "$root/src/ZVCore" -ts "$ts" -no-obsolete -locations none
done
