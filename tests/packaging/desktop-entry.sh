#!/usr/bin/env bash
# The desktop entry is valid, starts a program that is there, and its icon exists in every size.
#
#   desktop-entry.sh INSTALLED
. "$(dirname "$0")/common.sh"
usr=$1/usr
need desktop-file-validate desktop-file-utils

entry=$usr/share/applications/$application.desktop
silent desktop-file-validate "$entry"

value() {
    sed -n "s/^$1=//p" "$entry"
}
expect "the command" "$(value Exec)" "ZelFileCreator %f"
[ -x "$usr/bin/$(value TryExec)" ] || fail "the program to start is missing"
expect "the type of the files to open" "$(value MimeType)" "$mime_type;"

icons=$usr/share/icons/hicolor
for name in "apps/$(value Icon)" "mimetypes/${mime_type/\//-}"; do
    for size in 16 22 24 32 48 64 128 256; do
        read -r width height < <(od -An -j16 -N8 --endian=big -tu4 \
            "$icons/${size}x$size/$name.png")
        expect "the size of $name.png" "$width x $height" "$size x $size"
    done
    grep -q '<svg ' "$icons/scalable/$name.svg" || fail "$name.svg is no drawing"
done
