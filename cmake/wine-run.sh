#!/bin/sh
# Runs a Windows program under Wine in a prefix of the build folder's own, never the user's.
#   wine-run.sh BUILD_DIR PROGRAM [ARGUMENTS]
# Makes the prefix on the first use. Windows are drawn nowhere unless WINE_GRAPHICS=x11, which wants a DISPLAY
# and has a prefix of its own.
set -eu
build_dir=$1
shift

graphics=${WINE_GRAPHICS:-null}
WINEPREFIX=${WINEPREFIX:-$build_dir/wine-$graphics}
# Without the overrides the first start asks to install other software, and a crash waits in a dialog.
WINEDLLOVERRIDES=${WINEDLLOVERRIDES:-mscoree=d;mshtml=d;winedbg.exe=d}
WINEDEBUG=${WINEDEBUG:--all}
WINEARCH=win64
export WINEPREFIX WINEDLLOVERRIDES WINEDEBUG WINEARCH

if [ ! -e "$WINEPREFIX.ready" ]; then
    (
        flock 9
        if [ ! -e "$WINEPREFIX.ready" ]; then
            wineboot -i >"$WINEPREFIX.log" 2>&1
            wine reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d "$graphics" /f >>"$WINEPREFIX.log" 2>&1
            # Without a window manager each managed window costs two seconds.
            wine reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f >>"$WINEPREFIX.log" 2>&1
            wineserver -w
            : >"$WINEPREFIX.ready"
        fi
    ) 9>"$WINEPREFIX.lock"
fi

exec wine "$@"
