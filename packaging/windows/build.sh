#!/usr/bin/env bash
# Builds the ZEL File Creator for Windows, on Debian 12.
#
#   packaging/windows/build.sh [--qt ARCHIVE] [--test]
#
# Leaves the portable archive and the installer in build/windows/. With --test it also runs every test
# under Wine, the installer's included, and leaves pictures in build/windows/pictures/.
#
# The toolkit comes from ARCHIVE, else from where an earlier run left it, else from an archive in a
# folder "shared" beside this source tree, else from Debian's source package, which takes some 20
# minutes. ZEL_JOBS says how many processes to run at a time (default: one per processor).
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=$(cd "$here/../.." && pwd)
. "$root/tools/steps.sh"

archive=
test=
while [ $# -gt 0 ]; do
    case "$1" in
        --qt)
            [ $# -ge 2 ] || fail "--qt needs the name of an archive."
            archive=$(realpath -m "$2")
            [ -f "$archive" ] || fail "there is no archive $2: name an existing one, or leave --qt away."
            shift
            ;;
        --test) test=yes ;;
        -h | --help)
            sed -n '2,/^set /s/^# \{0,1\}//p' "$0"
            exit 0
            ;;
        *) fail "unknown argument $1: only --qt ARCHIVE and --test are known." ;;
    esac
    shift
done

jobs=${ZEL_JOBS:-$(nproc)}
export ZEL_JOBS=$jobs
name=qt-5.15.8-windows-x86_64
export ZEL_WINDOWS_QT=${XDG_CACHE_HOME:-$HOME/.cache}/zel-file-creator/$name

# Where the toolkit in the cache came from, and the same words for an archive.
cached_origin() {
    cat "$ZEL_WINDOWS_QT/.complete" 2>/dev/null || true
}
origin_of() { # ARCHIVE
    echo "archive $(sha256sum "$1" | cut -d ' ' -f 1)"
}

provide_toolkit() {
    if [ -z "$archive" ] && [ -z "$(cached_origin)" ] && [ -f "$root/../shared/$name.tar.xz" ]; then
        archive=$(realpath "$root/../shared/$name.tar.xz")
    fi
    if [ -n "$archive" ]; then
        if [ "$(cached_origin)" != "$(origin_of "$archive")" ]; then
            "$here/qt.sh" unpack "$archive" "$ZEL_WINDOWS_QT"
        fi
    elif [ -z "$(cached_origin)" ]; then
        need_packages dpkg-dev g++ make perl
        "$here/qt.sh" build "$ZEL_WINDOWS_QT"
    fi
}

# libqt5core5a for the licence texts of the toolkit's parts, the fonts for what the tests show.
packages=(cmake ninja-build g++-mingw-w64-x86-64-posix nsis xz-utils libqt5core5a)
[ -z "$test" ] || packages+=(wine wine64 xvfb unzip fonts-wine fonts-liberation fonts-dejavu-core
    libfontconfig1 libxcursor1 libxrandr2 libxcomposite1 libxi6 libxrender1 libxinerama1 libgl1 opensbi seabios)
need_packages "${packages[@]}"
provide_toolkit

cd "$root"
if command -v ccache >/dev/null; then
    export CMAKE_CXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER-ccache}
fi
tests=OFF
[ -z "$test" ] || tests=ON
cmake --preset windows -D ZEL_BUILD_TESTS=$tests -D ZEL_WINDOWS_QT="$ZEL_WINDOWS_QT" --log-level=WARNING \
    | sed '/^Preset CMake variables/,/^$/d'
cmake --build --preset windows --parallel "$jobs"

if [ -n "$test" ]; then
    "$here/wine/session.sh" -j "$jobs" \
        ctest --test-dir "$root/build/windows" --output-on-failure --parallel "$jobs"
fi

echo "done:"
ls "$root"/build/windows/*-windows-x86_64.zip "$root"/build/windows/*-windows-x86_64-setup.exe
