#!/usr/bin/env bash
# Installs what is missing, builds the program and starts it.
#
#   ./run.sh [package.zel]
#
# All arguments go to the program; its exit code comes back. Where there is no display, the program
# runs on a virtual one and pictures of it are saved under build/.
set -euo pipefail

called_from=$PWD
cd "$(dirname "${BASH_SOURCE[0]}")"
. tools/steps.sh
. tools/packages.sh
program=$PWD/build/release/app/ZelFileCreator

# File names are taken as the system's 8-bit encoding gives them; without one, not all can be named.
if [ -z "${LC_ALL:-}${LC_CTYPE:-}${LANG:-}" ]; then
    export LANG=C.UTF-8
fi

need_packages "${build_packages[@]}"
configure release
build release ZelFileCreator

has_display() {
    [ -n "${DISPLAY:-}" ] || return 1
    need_packages x11-utils
    xdpyinfo >/dev/null 2>&1
}

if has_display; then
    step "Starting"
    cd "$called_from"
    exec "$program" "$@"
fi

for argument in "$@"; do
    case $argument in
        -*)
            cd "$called_from"
            QT_QPA_PLATFORM=offscreen exec "$program" "$@"
            ;;
    esac
done

step "There is no display, so the program is shown on a virtual one."
need_packages "${picture_packages[@]}"
package=${1:-}
if [ -z "$package" ]; then
    build release make_sample_package
    step "Making a package of a real firmware image"
    package=$PWD/build/sample/opensbi.zel
    mkdir -p build/sample
    cp /usr/lib/riscv64-linux-gnu/opensbi/generic/fw_jump.bin build/sample/
    build/release/tools/make_sample_package build/sample/fw_jump.bin "$package"
elif [[ $package != /* ]]; then
    package=$called_from/$package
fi
step "Taking pictures"
tests/support/on-desktop.sh tools/take-pictures.sh "$program" "$package" "$PWD/build/pictures"
