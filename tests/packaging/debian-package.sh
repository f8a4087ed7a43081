#!/usr/bin/env bash
# Builds the Debian package, looks into it, and installs, runs and removes the program in a system
# of its own: an empty root folder with the list of packages of this machine.
#
#   debian-package.sh INSTALLED BUILD VERSION
. "$(dirname "$0")/common.sh"
build=$2 version=$3
need dpkg-shlibdeps dpkg-dev
need lintian lintian
PATH=$PATH:/usr/sbin:/sbin

cpack --config "$build/CPackConfig.cmake" -B "$scratch/made" >"$scratch/log" 2>&1 ||
    fail "$(cat "$scratch/log")"
package=$(echo "$scratch"/made/*.deb)
expect "the file" "${package##*/}" "zelfilecreator_${version}_$(dpkg --print-architecture).deb"

field() {
    dpkg-deb --field "$package" "$1"
}
expect "the package's name" "$(field Package)" zelfilecreator
expect "the package's version" "$(field Version)" "$version"
expect_in "what the package depends on" "$(field Depends)" libqt5widgets5
newest=$(dpkg-deb --fsys-tarfile "$package" |
    tar --extract --to-stdout ./usr/share/doc/zelfilecreator/changelog.gz |
    gzip --decompress | sed -n '1s/.*(\(.*\)).*/\1/p')
expect "the newest version in the change log" "$newest" "$version"

dpkg-deb --fsys-tarfile "$package" | tar --list --verbose --numeric-owner >"$scratch/contents"
strange=$(grep -vE '^(drwxr-xr-x|-rw-r--r--|-rwxr-xr-x) 0/0 ' "$scratch/contents" || true)
expect "what has strange rights or owners" "$strange" ""

as_root=()
lintian_options=(--fail-on "error,warning")
if [ "$(id -u)" -eq 0 ]; then
    lintian_options+=(--allow-root)
else
    need fakeroot fakeroot
    as_root=(fakeroot)
fi
lintian "${lintian_options[@]}" "$package" >"$scratch/log" 2>&1 || fail "$(cat "$scratch/log")"

root=$scratch/root
mkdir -p "$root/var/lib/dpkg/info" "$root/var/lib/dpkg/updates" "$root/var/lib/dpkg/triggers"
awk -v RS= -v ORS='\n\n' '!/^Package: zelfilecreator\n/' /var/lib/dpkg/status \
    >"$root/var/lib/dpkg/status"
manage() {
    "${as_root[@]}" dpkg --root="$root" --force-not-root --log=/dev/null "$@" >"$scratch/log" 2>&1 ||
        fail "dpkg $*: $(grep -v 'files list file' "$scratch/log")"
}
state() {
    dpkg-query --admindir="$root/var/lib/dpkg" --show --showformat='${db:Status-Abbrev}' \
        zelfilecreator 2>/dev/null || echo absent
}

manage --install "$package"
expect "the state of the installed package" "$(state)" "ii "
diff "$here/installed-files.txt" <(files "$root" | grep -v '^var/lib/dpkg/') ||
    fail "other files were installed than expected (<)"
manage --verify zelfilecreator
expect_in "the version text" "$("$root/usr/bin/ZelFileCreator" --version)" ZelFileCreator

manage --remove zelfilecreator
expect "the state of the removed package" "$(state)" absent
left=$(cd "$root" && find . -mindepth 1 ! -path './var' ! -path './var/lib' \
    ! -path './var/lib/dpkg*')
expect "what is left behind" "$left" ""
