#!/usr/bin/env bash
# Installs the program into an empty folder and looks at what arrives there.
#
#   install.sh INSTALLED BUILD
. "$(dirname "$0")/common.sh"
installed=$1 build=$2

rm -rf "$installed"
DESTDIR=$installed cmake --install "$build" --prefix /usr >"$scratch/log" ||
    fail "$(cat "$scratch/log")"

diff "$here/installed-files.txt" <(files "$installed") ||
    fail "other files were installed than expected (<)"
find "$installed/usr/share" -type f -perm /111 >"$scratch/executable"
[ ! -s "$scratch/executable" ] || fail "executable, but no program: $(cat "$scratch/executable")"
"$installed/usr/bin/ZelFileCreator" --version >/dev/null
