#!/usr/bin/env bash
# Renders the icons anew and compares them, byte for byte, with the images that are kept.
#
#   icons-match-their-drawings.sh RESOURCES
set -eu

resources=$1
for tool in rsvg-convert icotool; do
    if ! command -v "$tool" >/dev/null; then
        echo "$tool is not installed (Debian packages librsvg2-bin and icoutils)"
        exit 1
    fi
done

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
"$resources/render.sh" "$scratch"

status=0
for kept in png hicolor ZelFile.ico ZelDocument.ico; do
    diff --recursive --brief "$resources/$kept" "$scratch/$kept" || status=1
done
[ "$status" -eq 0 ] || echo "run resources/render.sh and keep what it writes"
exit "$status"
