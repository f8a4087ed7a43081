#!/usr/bin/env bash
# The desktop recognises packages by their name and by their first bytes, takes nothing else for
# one, and opens them with the program.
#
#   mime-type.sh INSTALLED
. "$(dirname "$0")/common.sh"
usr=$1/usr
need xmllint libxml2-utils
need update-mime-database shared-mime-info
need update-desktop-database desktop-file-utils
need gio libglib2.0-bin

share=$scratch/share
mkdir -p "$share/mime/packages" "$share/applications"
export XDG_DATA_DIRS=$share PATH=$usr/bin:$PATH
# The data base is of the moment and need not survive a power cut.
export PKGSYSTEM_ENABLE_FSYNC=0
cp "$usr/share/mime/packages/$application.xml" "$share/mime/packages/"
cp "$usr/share/applications/$application.desktop" "$share/applications/"
silent xmllint --noout "$share/mime/packages/$application.xml"
silent update-mime-database "$share/mime"

# From here on beside all the types that a desktop knows.
cp /usr/share/mime/packages/freedesktop.org.xml "$share/mime/packages/"
silent update-mime-database "$share/mime"
silent update-desktop-database "$share/applications"
expect "who claims the extension" "$(grep -i ':\*\.zel\b' "$share/mime/globs2")" "50:$mime_type:*.zel"

# attribute NAME FILE
attribute() {
    gio info --attributes="standard::$1" "$2" | sed -n "s/^ *standard::$1: //p"
}
# recognised FILE BYTES TYPE: a file of that name with these bytes (as for printf) has the type.
recognised() {
    # shellcheck disable=SC2059 # The bytes are written as escapes.
    printf "$2" >"$scratch/$1"
    expect "the type of $1" "$(attribute content-type "$scratch/$1")" "$3"
}
recognised option-board.zel '\x00ZEL\x00\x00\x00\x08' "$mime_type"
recognised by-its-bytes '\x00ZEL\x00\x00\x00\x08' "$mime_type"
recognised by-its-name.zel 'not a package yet' "$mime_type"
recognised SHOUTED.ZEL '\x00ZEL' "$mime_type"
recognised other-first-byte.zel '\x7fZEL\x00\x00\x00\x08' "$mime_type"
recognised note 'AZEL is no word\n' text/plain
recognised later 'not a \x00ZEL\n\x01' application/octet-stream
recognised option-board.bin '\x01\x02\x03\x04' application/octet-stream

icons=$(attribute icon "$scratch/option-board.zel")
case $icons in
*"${mime_type/\//-}"*package-x-generic*) ;;
*) fail "the icons of a package are $icons" ;;
esac
expect_in "what opens packages" "$(gio mime "$mime_type")" "^Default .*$application.desktop"
