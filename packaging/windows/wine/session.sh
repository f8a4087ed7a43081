#!/usr/bin/env bash
# Runs a command with Windows machines at hand, on which run.sh runs Windows programs.
#
#   session.sh [-j MACHINES] COMMAND [ARGUMENT...]
#
# A machine is a Wine prefix of its own, with its registry, its folders and a user whose name is not
# ASCII, on a virtual display of its own. All of them are gone when the command has ended. Ends with
# the command's exit code.
set -euo pipefail

fail() {
    echo "wine/session.sh: $*" >&2
    exit 125
}

machines=1
if [ "${1:-}" = -j ]; then
    machines=$2
    shift 2
fi
[ $# -gt 0 ] || fail "name the command to run."
for tool in wine wineserver Xvfb flock; do
    command -v "$tool" >/dev/null || fail "$tool is missing: install the packages wine, wine64, xvfb and util-linux."
done

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
session=$(mktemp -d "${TMPDIR:-/tmp}/zel-wine-XXXXXX")
servers=()
child=

cleanup() {
    trap - EXIT HUP INT TERM
    [ -z "$child" ] || kill "$child" 2>/dev/null || true
    local machine
    for machine in "$session"/machine-*/; do
        [ -d "$machine/prefix" ] || continue
        (use_machine "${machine%/}" && wineserver -k) 2>/dev/null || true
    done
    [ ${#servers[@]} -eq 0 ] || kill "${servers[@]}" 2>/dev/null || true
    wait 2>/dev/null || true
    rm -rf "$session"
}
trap cleanup EXIT
trap 'exit 129' HUP
trap 'exit 130' INT
trap 'exit 143' TERM

# shellcheck source=packaging/windows/wine/environment.sh
. "$here/environment.sh"

start_display() { # MACHINE
    mkfifo "$1/display.fifo"
    Xvfb -displayfd 3 -screen 0 2400x1500x24 -nolisten tcp -noreset \
        3>"$1/display.fifo" >"$1/display.log" 2>&1 &
    servers+=($!)
    local number
    read -r -t 30 number <"$1/display.fifo" \
        || fail "no virtual display could be started: $(cat "$1/display.log")"
    echo ":$number" >"$1/display"
}

# What the machines have set: a Windows desktop as large as the display, managed by Wine alone, so that
# windows are activated as on Windows; no crash dialog that waits for a click; a font that stands in
# for the one that only Windows has.
settings='Windows Registry Editor Version 5.00

[HKEY_CURRENT_USER\Software\Wine\Explorer]
"Desktop"="Default"

[HKEY_CURRENT_USER\Software\Wine\Explorer\Desktops]
"Default"="2400x1500"

[HKEY_CURRENT_USER\Software\Wine\WineDbg]
"ShowCrashDialog"=dword:00000000

[HKEY_CURRENT_USER\Software\Wine\Fonts\Replacements]
"Segoe UI"="Liberation Sans"
'

install_windows() { # MACHINE
    use_machine "$1"
    mkdir "$HOME"
    printf '%s' "$settings" >"$1/settings.reg"
    wine wineboot --init >"$1/setup.log" 2>&1 \
        && wine regedit /S "$(windows_path "$1/settings.reg")" >>"$1/setup.log" 2>&1 \
        && wineserver -w \
        || fail "Wine could not be set up: $(cat "$1/setup.log")"
}

for index in $(seq "$machines"); do
    machine=$session/machine-$index
    mkdir -p "$machine/sockets"
    start_display "$machine"
    if [ "$index" = 1 ]; then
        (install_windows "$machine")
    else
        cp -a "$session/machine-1/prefix" "$session/machine-1/home" "$machine"
        rm -f "$machine/prefix/wineserver" # names the sockets of the first machine
    fi
done
for machine in "$session"/machine-*/; do
    (use_machine "${machine%/}" && wineserver -p)
done

export ZEL_WINE_SESSION=$session
# In the background, so that a signal ends the session at once.
"$@" <&0 &
child=$!
status=0
wait "$child" || status=$?
child=
exit "$status"
