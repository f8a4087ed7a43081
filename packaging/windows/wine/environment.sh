# How session.sh and run.sh run Wine. To be sourced.

# use_machine MACHINE: sends what follows to this machine of the session.
use_machine() {
    DISPLAY=$(cat "$1/display")
    export DISPLAY
    export WINEPREFIX=$1/prefix
    # Where Wine puts its sockets.
    export TMPDIR=$1/sockets
    # Wine shows the folders of HOME as the user's own, so they must not be the real ones.
    export HOME=$1/home
    # The name of the Windows user. None of the 8-bit Windows code pages holds all of it.
    export USER='Zoë Śmigła'
    export LC_ALL=C.UTF-8
    # No downloads of .NET and HTML engines, no entries in the menus of the Linux desktop.
    export WINEDLLOVERRIDES='mscoree,mshtml=;winemenubuilder.exe=d'
    export WINEDEBUG=${WINEDEBUG:--all}
    unset WAYLAND_DISPLAY XDG_CONFIG_HOME XDG_DATA_HOME XDG_CACHE_HOME QT_QPA_PLATFORM
}

# windows_path PATH: an absolute path of this system as Windows programs see it.
windows_path() {
    printf 'Z:%s' "${1//\//\\}"
}
