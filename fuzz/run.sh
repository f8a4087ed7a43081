#!/usr/bin/env bash
# fuzz/run.sh [TARGET] [SECONDS]: tries hostile input on one reader, or on all of them in turn.
#
# What it finds is left in fuzz/findings/TARGET, where the tests try it from then on.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
. tools/steps.sh
. tools/packages.sh

all_targets=(file body tree paths clipboard)
# Longest input of each, in bytes: room for a few of everything, and no more.
declare -A longest=([file]=1024 [body]=1024 [tree]=1024 [paths]=256 [clipboard]=256)

# fuzz TARGET SECONDS: runs one target on a corpus of its own, which starts from the seeds.
fuzz() {
    local target=$1 seconds=$2 status=0
    local findings=fuzz/findings/$target corpus=build/fuzz/corpus/$target
    mkdir -p "$findings" "$corpus"
    step "Fuzzing $target for $seconds s"
    "build/fuzz/fuzz/fuzz_$target" "-max_total_time=$seconds" "-max_len=${longest[$target]}" \
        -print_final_stats=1 "-artifact_prefix=$findings/" "$corpus" "fuzz/corpus/$target" \
        >"$scratch/log" 2>&1 || status=$?
    if [ "$status" -ne 0 ]; then
        tail -n 40 "$scratch/log" >&2
        fail "$target: something was found; the input is in $findings."
    fi
    echo "$target: $(sed -n 's/^stat::number_of_executed_units: *//p' "$scratch/log") executions"
}

targets=("${all_targets[@]}")
if [ $# -gt 0 ] && [ "$1" != all ]; then
    [ -n "${longest[$1]:-}" ] || fail "There is no target $1; there are ${all_targets[*]}."
    targets=("$1")
fi
seconds=${2:-60}

need_packages "${fuzz_packages[@]}"
configure fuzz
build fuzz "${targets[@]/#/fuzz_}"

# In memory where there is such a folder: many inputs go through files.
scratch=$(mktemp -d -p "$([ -d /dev/shm ] && echo /dev/shm || echo "${TMPDIR:-/tmp}")" zel-fuzz-XXXXXX)
trap 'rm -rf "$scratch"' EXIT
export TMPDIR=$scratch QT_QPA_PLATFORM=offscreen
export ASAN_OPTIONS=quarantine_size_mb=16:malloc_context_size=6
export LSAN_OPTIONS=suppressions=$PWD/tests/support/leaks.supp:print_suppressions=0

for target in "${targets[@]}"; do
    fuzz "$target" "$seconds"
done
