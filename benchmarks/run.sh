#!/usr/bin/env bash
# Installs what is missing, builds the benchmarks and prints one table of what they measure.
#
#   benchmarks/run.sh [PATTERN]
#
# PATTERN selects the rows whose names match it; without one, all are measured, which takes about
# seven minutes on an idle machine.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
. tools/steps.sh
. tools/packages.sh

need_packages "${build_packages[@]}" libbenchmark-dev xvfb openbox x11-utils opensbi
configure benchmark
build benchmark

programs=build/benchmark/benchmarks
select=--benchmark_filter=${1:-all}

# A row a line. What else the programs and the benchmark library have to say goes to a file.
messages=$PWD/build/benchmark/messages.txt
: >"$messages"
rows() {
    "$@" "$select" 2>>"$messages" || fail "${!#} stopped early; see $messages."
}

step "Measuring"
echo "what | ours | floor | ratio | goal | met or above"
echo "--- | --- | --- | --- | --- | ---"
for program in bm_Package bm_Rules bm_Memory; do
    rows "$programs/$program"
done
for program in bm_Start bm_Tables bm_Popup; do
    rows tests/support/on-desktop.sh "$programs/$program"
done
