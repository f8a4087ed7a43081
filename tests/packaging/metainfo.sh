#!/usr/bin/env bash
# The description for software centres is valid and fits the other installed files.
#
#   metainfo.sh INSTALLED VERSION
. "$(dirname "$0")/common.sh"
installed=$1 version=$2
need appstreamcli appstream
need xmllint libxml2-utils

metainfo=$installed/usr/share/metainfo/$application.metainfo.xml
for check in "validate --strict --no-net $metainfo" "validate-tree --no-net $installed"; do
    # shellcheck disable=SC2086 # The words of a check are meant to be split.
    appstreamcli $check >"$scratch/verdict" 2>&1 || fail "$check: $(cat "$scratch/verdict")"
done

query() {
    xmllint --xpath "string($1)" "$metainfo"
}
expect "the desktop entry" "$(query //launchable)" "$application.desktop"
expect "the file type" "$(query //provides/mediatype)" "$mime_type"
expect "the newest release" "$(query //release/@version)" "$version"
[ -x "$installed/usr/bin/$(query //provides/binary)" ] || fail "the program named is missing"
