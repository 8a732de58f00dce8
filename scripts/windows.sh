# SPDX-License-Identifier: MIT
# shellcheck shell=bash
# What the scripts for Windows share; to be sourced behind common.sh.

# are_qt_options [ARGUMENT...]: whether scripts/build-windows-qt takes these.
are_qt_options() {
    [ $# -eq 0 ] || { [ $# -eq 2 ] && [ "$1" = --serialport ] && [ -d "$2" ]; }
}

# begin_windows: a Windows of the script's own, which is thrown away at its end.
begin_windows() {
    WINEPREFIX=$(mktemp -d)
    export WINEPREFIX WINEDEBUG=-all WINEDLLOVERRIDES='mscoree,mshtml=' LC_ALL=C.UTF-8
    trap '/usr/lib/wine/wineserver64 -k || true; rm -rf "$WINEPREFIX"' EXIT
}

# wine COMMAND [ARGUMENT...]
wine() {
    /usr/lib/wine/wine64 "$@" </dev/null
}
