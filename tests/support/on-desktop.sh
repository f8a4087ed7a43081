#!/usr/bin/env bash
# Runs a command on a desktop of its own: a virtual display with a window manager.
#
#   on-desktop.sh COMMAND [ARGUMENT...]
#
# SCREEN names the size of the display (default 1600x1000x24). Ends with the command's exit code.
set -eu

scratch=$(mktemp -d)
server=
manager=
cleanup() {
    [ -z "$manager" ] || kill "$manager" 2>/dev/null || true
    [ -z "$server" ] || kill "$server" 2>/dev/null || true
    wait 2>/dev/null || true
    rm -rf "$scratch"
}
trap cleanup EXIT

mkfifo "$scratch/display"
Xvfb -displayfd 3 -screen 0 "${SCREEN:-1600x1000x24}" -dpi 96 -nolisten tcp -noreset \
    3>"$scratch/display" >"$scratch/server.log" 2>&1 &
server=$!
if ! read -r -t 30 number <"$scratch/display"; then
    echo "on-desktop: no virtual display could be started:" >&2
    cat "$scratch/server.log" >&2
    exit 125
fi
export DISPLAY=":$number"
export QT_QPA_PLATFORM=xcb
unset WAYLAND_DISPLAY
# Nothing is drawn with OpenGL and nothing is asked of other services: the toolkit needs neither a
# driver nor a message bus, which it would start for this display and leave behind.
export QT_XCB_GL_INTEGRATION=none
export DBUS_SESSION_BUS_ADDRESS=disabled:

HOME="$scratch" XDG_CONFIG_HOME="$scratch" \
    openbox --sm-disable --startup "touch $scratch/managed" >"$scratch/manager.log" 2>&1 &
manager=$!
for _ in $(seq 600); do
    [ ! -e "$scratch/managed" ] || break
    sleep 0.1
done
if [ ! -e "$scratch/managed" ]; then
    echo "on-desktop: the window manager did not start:" >&2
    cat "$scratch/manager.log" >&2
    exit 125
fi

status=0
"$@" || status=$?
exit "$status"
