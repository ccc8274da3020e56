#!/bin/bash
# Runs a command with a screen that nobody sees: with-display.sh COMMAND [ARGUMENTS]
# Programs that the command starts through wine-run.sh draw their windows there. Wants Debian's package xvfb.
set -eu
command -v Xvfb >/dev/null || {
    echo "with-display.sh: Xvfb is missing; it is in Debian's package xvfb." >&2
    exit 1
}

coproc screen { exec Xvfb -displayfd 1 -screen 0 1280x1024x24 -nolisten tcp 2>/dev/null; }
xvfb=$screen_PID
trap 'kill $xvfb 2>/dev/null || :' EXIT
read -r number <&"${screen[0]}" || {
    echo "with-display.sh: Xvfb did not start." >&2
    exit 1
}

DISPLAY=:$number WINE_GRAPHICS=x11 "$@"
