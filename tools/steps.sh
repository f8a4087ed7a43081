# Shell routines of run.sh, test.sh and the programs beside them. Sourced, not run.

# One line a step.
step() {
    printf '==> %s\n' "$*"
}

# Ends with one sentence that says what is missing and what to do.
fail() {
    printf '%s: %s\n' "$(basename "$0")" "$*" >&2
    exit 1
}

# Runs a command as root.
as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif command -v sudo >/dev/null 2>&1; then
        sudo "$@"
    else
        return 126
    fi
}

# need_packages NAME...: installs the named Debian packages that are not there.
need_packages() {
    local missing=() name
    for name in "$@"; do
        case "$(dpkg-query -W -f='${db:Status-Status}' "$name" 2>/dev/null)" in
            installed) ;;
            *) missing+=("$name") ;;
        esac
    done
    [ ${#missing[@]} -gt 0 ] || return 0

    step "Installing ${missing[*]}"
    local log
    log=$(mktemp)
    if ! { as_root apt-get update -qq &&
        as_root env DEBIAN_FRONTEND=noninteractive \
            apt-get install -y -qq --no-install-recommends "${missing[@]}"; } >"$log" 2>&1; then
        tail -n 5 "$log" >&2
        rm -f "$log"
        fail "These packages could not be installed: ${missing[*]}; install them as root (apt-get install) and run this again."
    fi
    rm -f "$log"
}

# configure PRESET: prepares the build folder of a CMake preset unless that is done.
configure() {
    if [ ! -f "build/$1/build.ninja" ]; then
        step "Configuring ($1)"
        quietly cmake --preset "$1"
    fi
}

# build PRESET [TARGET...]: builds what has changed.
build() {
    local preset=$1
    shift
    step "Building ($preset)"
    quietly cmake --build "build/$preset" ${1:+--target "$@"}
}

# Runs a command and shows what it says only when it fails.
quietly() {
    local log status=0
    log=$(mktemp)
    "$@" >"$log" 2>&1 || status=$?
    [ "$status" -eq 0 ] || cat "$log" >&2
    rm -f "$log"
    return "$status"
}
