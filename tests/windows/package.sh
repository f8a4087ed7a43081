#!/usr/bin/env bash
# Checks the folder that is handed out: it holds every library that its programs load, and no other.
#
#   package.sh FOLDER ARCHIVE.zip OBJDUMP
set -euo pipefail

folder=$1
archive=$2
objdump=$3
failures=0
complain() {
    echo "FAIL: $*"
    failures=$((failures + 1))
}

# The libraries that FILE loads, in lower case.
imports() {
    "$objdump" -p "$1" | sed -n 's/^[[:space:]]*DLL Name: //p' | tr '[:upper:]' '[:lower:]'
}

# Libraries of every Windows since 7 that the programs may rely on.
system=' advapi32 comctl32 comdlg32 d3d11 d3d9 dwmapi dxgi gdi32 imm32 kernel32 mpr msvcrt netapi32 ole32 oleaut32
 shell32 shlwapi user32 userenv uxtheme version winmm ws2_32 wtsapi32 '

mapfile -t files < <(cd "$folder" && find . -iname '*.exe' -o -iname '*.dll' | sort)
wanted=
for file in "${files[@]}"; do
    while read -r library; do
        if [ -e "$(find "$folder" -maxdepth 1 -iname "$library" -print -quit)" ]; then
            wanted+=" $library"
        elif [[ $system != *[[:space:]]"${library%.dll}"[[:space:]]* ]]; then
            complain "$file needs $library, which is neither there nor part of Windows."
        fi
    done < <(imports "$folder/$file")
done
for file in "${files[@]}"; do
    case "$file" in
        ./ZelFileCreator.exe | ./platforms/qwindows.dll | ./styles/qwindowsvistastyle.dll) continue ;;
    esac
    name=$(basename "$file" | tr '[:upper:]' '[:lower:]')
    [[ " $wanted " == *" $name "* ]] || complain "nothing needs $file."
done

for file in ZelFileCreator.exe platforms/qwindows.dll styles/qwindowsvistastyle.dll qt.conf \
    licenses/README.txt licenses/qt/LICENSE.LGPL3 licenses/qt/LICENSE.GPL3 licenses/qt/third-party.txt \
    licenses/gcc-runtime.txt licenses/mingw-w64-runtime.txt; do
    [ -s "$folder/$file" ] || complain "$file is missing."
done

# The archive is that folder, whole.
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
unzip -q "$archive" -d "$scratch"
diff -r "$folder" "$scratch/$(basename "$folder")" || complain "$archive holds something else."
[ "$(ls "$scratch")" = "$(basename "$folder")" ] || complain "$archive has more than one top folder."

[ "$failures" = 0 ]
