# shellcheck shell=bash
# What the packaging tests share. Sourced by each of them; gives it a scratch folder and a home of
# its own.
# shellcheck disable=SC2034 # The names are for the tests.
set -euo pipefail

here=$(cd "$(dirname "$0")" && pwd)
application=com.halvorn.ZelFileCreator
mime_type=application/vnd.halvorn.zel

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
export HOME=$scratch/home LC_ALL=C.UTF-8 QT_QPA_PLATFORM=offscreen
export XDG_CONFIG_HOME=$HOME/config XDG_DATA_HOME=$HOME/data XDG_CACHE_HOME=$HOME/cache
export XDG_RUNTIME_DIR=$scratch/run
mkdir -p "$HOME"
mkdir -m 700 "$XDG_RUNTIME_DIR"

fail() {
    echo "FAILED: $*" >&2
    exit 1
}

# need TOOL PACKAGE: ends the test when a tool is missing.
need() {
    command -v "$1" >/dev/null || fail "$1 is not installed (Debian package $2)"
}

# silent COMMAND [ARGUMENT...]: runs a command that must succeed and say nothing.
silent() {
    local output
    output=$("$@" 2>&1) || fail "$*: $output"
    [ -z "$output" ] || fail "$* said: $output"
}

# expect WHAT ACTUAL EXPECTED
expect() {
    [ "$2" = "$3" ] || fail "$1 is \"$2\", not \"$3\""
}

# expect_in WHAT TEXT PATTERN
expect_in() {
    grep -q -e "$3" <<<"$2" || fail "$1 has no \"$3\": $2"
}

# files FOLDER: every file below a folder, sorted, relative to the folder.
files() {
    (cd "$1" && find . -mindepth 1 ! -type d -printf '%P\n') | LC_ALL=C sort
}
