#!/usr/bin/env bash
# The manual page is free of warnings, is found by its summary, and names every option.
#
#   manual.sh INSTALLED VERSION
. "$(dirname "$0")/common.sh"
usr=$1/usr version=$2
need man man-db
need lexgrog man-db
need groff groff-base

page=$usr/share/man/man1/ZelFileCreator.1.gz
gzip --decompress --stdout "$page" >"$scratch/page"
warnings=$(groff -man -Tutf8 -ww -rCHECKSTYLE=3 "$scratch/page" 2>&1 >/dev/null)
expect "what groff warns of" "$warnings" ""
warnings=$(man --warnings --local-file --encoding=UTF-8 "$page" 2>&1 >"$scratch/text")
expect "what man warns of" "$warnings" ""

expect_in "what whatis shows" "$(lexgrog "$page")" \
    '"ZelFileCreator - assemble firmware-update packages'
grep -q "ZEL File Creator $version" "$scratch/text" || fail "the page is of another version"

"$usr/bin/ZelFileCreator" --help >"$scratch/help"
grep -oE -e '^ +-[^ ]+,|--[a-z-]+|^ +zelfilepath' "$scratch/help" | tr -d ' ,' >"$scratch/options"
[ "$(wc -l <"$scratch/options")" -ge 6 ] || fail "too few options in: $(cat "$scratch/help")"
while read -r option; do
    grep -qw -e "$option" "$scratch/text" || fail "$option is not explained"
done <"$scratch/options"
