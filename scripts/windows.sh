# SPDX-License-Identifier: MIT
# shellcheck shell=bash
# How scripts run Windows programs; to be sourced behind common.sh.

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
