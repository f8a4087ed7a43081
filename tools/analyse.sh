#!/usr/bin/env bash
# Runs the static analysis over the program's sources, or over those named. Warnings are errors.
#
#   tools/analyse.sh [FILE.cpp...]
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
. tools/steps.sh
. tools/packages.sh

need_packages "${test_packages[@]}" clang-tidy
configure dev
# Sources include what the toolkit's compilers generate.
build dev

if [ $# -eq 0 ]; then
    mapfile -t files < <(git ls-files {common,models,tlv,widgets,views,app,tools}/'*.cpp' ':!*_win.cpp')
    set -- "${files[@]}"
fi
step "Analysing $# files"
printf '%s\0' "$@" | xargs -0 -n 1 -P "$(nproc)" clang-tidy -p build/dev --quiet
