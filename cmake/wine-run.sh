#!/bin/sh
# Runs a Windows program under Wine in a prefix of the project's own, never the user's.
#   wine-run.sh FOLDER PROGRAM [ARGUMENTS]
# Makes the prefix FOLDER/wine-GRAPHICS on the first use and starts the Wine session when none is alive. The
# session ends by itself a minute after the last program. WINE_GRAPHICS chooses where windows appear:
#   null   nowhere (default): no display is needed
#   x11    on the display of $DISPLAY, undecorated and unmanaged, for pictures
#   auto   on the display of $DISPLAY as the person's own windows, or nowhere without one
set -eu
folder=$1
shift

graphics=${WINE_GRAPHICS:-null}
case $graphics in
null) drivers=null managed=N ;;
# Without a window manager each managed window costs two seconds.
x11) drivers=x11 managed=N ;;
auto) drivers=x11,null managed=Y ;;
*)
    echo "wine-run.sh: WINE_GRAPHICS must be null, x11 or auto, not '$graphics'." >&2
    exit 1
    ;;
esac

export WINEPREFIX="$folder/wine-$graphics"
export WINEARCH=win64
# Of Wine's own messages only the one that a program could not be loaded, which else ends without a word.
export WINEDEBUG="${WINEDEBUG:--all,err+module}"
# Without the overrides the first start asks to install other software, and a crash waits in a dialog.
export WINEDLLOVERRIDES="${WINEDLLOVERRIDES:-mscoree=d;mshtml=d;winedbg.exe=d;winemenubuilder.exe=d}"
# Arguments and file names are UTF-8 to Wine only in a UTF-8 locale.
export LC_ALL=C.UTF-8

# Wine's service processes live as long as the session. They must not inherit the caller's pipes, or ctest and
# every "| cat" would wait for them, nor the lock.
apart() {
    "$@" </dev/null >>"$WINEPREFIX.log" 2>&1 9>&-
}

# Wine makes the documents' folder and its like links to the person's home folder, where what programs put there would
# turn up.
keep_to_itself() {
    for place in "$WINEPREFIX"/drive_c/users/*/*; do
        [ ! -L "$place" ] || { rm "$place" && mkdir "$place"; }
    done
}

# Never fails: without a session the program starts one, only slower.
start_session() {
    keep_to_itself || :
    apart wineserver -p60 || :
    apart wine cmd.exe /c exit || :
}

# Debian's Wine does not look where its own fonts lie; without this one the signs in title bars and scroll bars
# are letters.
link_marlett() {
    [ ! -e /usr/share/wine/fonts/marlett.ttf ] ||
        ln -s /usr/share/wine/fonts/marlett.ttf "$WINEPREFIX/drive_c/windows/Fonts/"
}

# The session that makes the prefix has already looked for a driver, so it ends before the first program.
make_prefix() {
    apart wineboot -i &&
        apart wine reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d "$drivers" /f &&
        apart wine reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d "$managed" /f &&
        link_marlett &&
        apart wineserver -k &&
        apart wineserver -w &&
        start_session &&
        : >"$WINEPREFIX.ready"
}

if [ ! -e "$WINEPREFIX.ready" ] || ! wineserver -k0 2>/dev/null; then
    mkdir -p "$folder"
    exec 9>"$WINEPREFIX.lock"
    flock 9
    if [ ! -e "$WINEPREFIX.ready" ]; then
        : >"$WINEPREFIX.log"
        wineserver -k 2>/dev/null || :
        rm -rf "$WINEPREFIX"
        mkdir "$WINEPREFIX"
        apart wineserver -p60 || :
        make_prefix || {
            echo "wine-run.sh: the Wine prefix could not be made:" >&2
            cat "$WINEPREFIX.log" >&2
            exit 1
        }
    elif ! wineserver -k0 2>/dev/null; then
        start_session
    fi
    exec 9>&-
fi

exec wine "$@"
