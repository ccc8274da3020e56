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

# Wine's desktop stays for a second after the last program, and complains when the screen goes before it.
sockets() {
    grep -c "X11-unix/X$number\$" /proc/net/unix
}
unused=$(sockets)
wait_for_clients() {
    local tries
    for ((tries = 0; tries < 40 && $(sockets) > unused; ++tries)); do
        sleep 0.1
    done
}
trap 'wait_for_clients; kill $xvfb 2>/dev/null || :' EXIT

DISPLAY=:$number WINE_GRAPHICS=x11 "$@"
