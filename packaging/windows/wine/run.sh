#!/usr/bin/env bash
# Runs a Windows program on a free machine of the session, or in a session of its own.
#
#   run.sh [--dlls FOLDER:FOLDER...] PROGRAM.exe [ARGUMENT...]
#
# The output of a test program, which writes nothing to a pipe there, is shown when it has ended.
# Ends with the program's exit code.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
if [ -z "${ZEL_WINE_SESSION:-}" ]; then
    exec "$here/session.sh" "$here/run.sh" "$@"
fi
# shellcheck source=packaging/windows/wine/environment.sh
. "$here/environment.sh"

folders=
if [ "${1:-}" = --dlls ]; then
    folders=$2
    shift 2
fi
program=$1
shift
[ -f "$program" ] || {
    echo "wine/run.sh: there is no program $program." >&2
    exit 125
}

# Holds a machine for as long as this script lives: its lock file is open on descriptor 9.
take_machine() {
    for machine in "$ZEL_WINE_SESSION"/machine-*; do
        exec 9>"$machine/lock"
        if flock --nonblock 9; then
            return
        fi
    done
    flock 9
}

take_machine
use_machine "$machine"
# The mark of a program that was killed while it ran: whatever it left running must not disturb.
if [ -e "$machine/running" ]; then
    wineserver -k 9>&- || true
    wineserver -p 9>&-
fi
touch "$machine/running"

path=
while IFS= read -r folder; do
    [ -z "$folder" ] || path+="$(windows_path "$folder");"
done <<<"${folders//:/$'\n'}"
export WINEPATH=$path

# Wine starts services that outlive the program and keep its output open, so that whoever reads it
# would wait for them: it goes through a file.
output=$machine/output.txt
log=$machine/log.txt
arguments=("$@")
: >"$log"
case "$(basename "$program")" in
    tst_*.exe) arguments=(-o "$(windows_path "$log"),txt" "$@") ;;
esac
# Ended before ctest would end this script, so that its output is seen all the same.
status=0
timeout --kill-after=5 "${ZEL_WINE_TIMEOUT:-290}" \
    wine "$program" "${arguments[@]}" </dev/null >"$output" 2>&1 9>&- || status=$?
cat "$output" "$log"
[ "$status" != 124 ] || echo "wine/run.sh: $program took too long and was ended."
rm -f "$machine/running"
exit "$status"
