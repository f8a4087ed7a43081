#!/usr/bin/env bash
# Starts the program with a package on the display that there is, and saves a picture of each tab.
#
#   take-pictures.sh PROGRAM PACKAGE FOLDER
set -euo pipefail

program=$1
package=$2
folder=$3
. "$(dirname "${BASH_SOURCE[0]}")/steps.sh"

mkdir -p "$folder"
settings=$(mktemp -d)
XDG_CONFIG_HOME=$settings "$program" "$package" &
pid=$!
trap 'kill "$pid" 2>/dev/null || true; wait "$pid" 2>/dev/null || true; rm -rf "$settings"' EXIT

window=$(timeout 30 xdotool search --sync --onlyvisible --pid "$pid" --name 'ZEL File Creator' |
    head -n 1) || fail "The program opened no window."
xdotool windowactivate --sync "$window"
sleep 1
import -window "$window" "$folder/pre-update-validation.png"
xdotool key ctrl+Tab
sleep 1
import -window "$window" "$folder/option-update.png"

wmctrl -i -c "$window"
for _ in $(seq 50); do
    kill -0 "$pid" 2>/dev/null || break
    sleep 0.1
done
echo "Pictures of the program: $folder/pre-update-validation.png and $folder/option-update.png"
