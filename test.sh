#!/usr/bin/env bash
# Installs what is missing, builds with warnings as errors, checks the format and runs every test.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")"
. tools/steps.sh
. tools/packages.sh

need_packages "${test_packages[@]}"
configure dev
build dev

step "Checking the format"
git ls-files -co --exclude-standard '*.cpp' '*.h' | xargs clang-format --dry-run -Werror

step "Testing"
summary=$(mktemp)
trap 'rm -f "$summary"' EXIT
status=0
ctest --preset dev -j 2 | tee "$summary" || status=$?

total=$(sed -n 's/.*tests failed out of \([0-9]*\).*/\1/p' "$summary")
failed=$(sed -n 's/.*tests passed, \([0-9]*\) tests failed.*/\1/p' "$summary")
echo "$((${total:-0} - ${failed:-0})) passed, ${failed:-0} failed"
if [ "${total:-0}" -eq 0 ]; then
    fail "No test was run."
fi
exit "$status"
