#!/usr/bin/env bash
# Lets a random user play with the real window, under the address, undefined-behaviour and leak
# sanitizers.
#
#   fuzz/monkey.sh [EVENTS] [SEED]
#
# Plays 100,000 events of a new seed unless told otherwise. The seed is printed; the same seed plays
# the same events. Fails when the program crashes, leaks, warns, or shows a modified mark that lies.
# PRESET names another build to play with, such as dev.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
preset=${PRESET:-asan}
events=${1:-100000}
seed=${2:-$(od -An -N4 -tu4 /dev/urandom | tr -d ' ')}

echo "Seed $seed: fuzz/monkey.sh $events $seed plays it again."
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset" --target tst_Monkey

export QTEST_DISABLE_STACK_DUMP=1
# A day, in milliseconds: Qt Test ends a function after five minutes otherwise.
export QTEST_FUNCTION_TIMEOUT=86400000
export ASAN_OPTIONS=detect_leaks=1:detect_stack_use_after_return=1
export LSAN_OPTIONS=suppressions=$PWD/tests/support/leaks.supp:print_suppressions=0
export UBSAN_OPTIONS=print_stacktrace=1
# A line for each key would hide the rest.
export QT_LOGGING_RULES='zel.*.debug=false'
ZEL_MONKEY_EVENTS=$events ZEL_MONKEY_SEED=$seed \
    exec tests/support/on-desktop.sh "build/$preset/fuzz/monkey/tst_Monkey" -maxwarnings 0
