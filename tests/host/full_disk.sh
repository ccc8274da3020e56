#!/bin/sh
# Exports to a disk that gets full: a small one that only this script and its Wine session see.
#   full_disk.sh WINE_RUN FOLDER SCANEXPORT
# Ends with 77 where the system does not allow such a disk.
set -eu

if [ "${4:-}" != inside ]; then
    for options in -Urm -m; do
        if unshare $options true 2>/dev/null; then
            exec unshare $options "$0" "$1" "$2" "$3" inside
        fi
    done
    echo "No private file systems here: not tested."
    exit 77
fi

wine_run=$1
folder=$2
scanexport=$3
work=$(mktemp -d)
trap 'WINEPREFIX="$folder/wine-null" wineserver -k 2>/dev/null || :; umount "$work/disk" 2>/dev/null || :; rm -rf "$work"' EXIT

mkdir "$work/disk" "$work/pages"
mount -t tmpfs -o size=64k tmpfs "$work/disk" 2>/dev/null || {
    echo "No small disk here: not tested."
    exit 77
}
# A session from before would not see the disk.
WINEPREFIX="$folder/wine-null" wineserver -k 2>/dev/null || :
head -c 20000 /dev/urandom >"$work/pages/1.tif"
head -c 100000 /dev/urandom >"$work/pages/2.tif"
head -c 100 /dev/urandom >"$work/pages/3.tif"

status=0
"$wine_run" "$folder" "$scanexport" --lang en --to-dir "$work/disk/out" --prefix Scan --digits 1 "$work/pages" \
    2>"$work/errors" || status=$?
cat "$work/errors"

fail() {
    echo "full_disk.sh: $*"
    exit 1
}
[ $status -eq 1 ] || fail "exit code $status instead of 1"
grep -q '2\.tif was not exported: the disk of .*\\disk\\out is full, and .*\\Scan2\.tif is incomplete\.$' \
    "$work/errors" || fail "the page, the reason and the incomplete file are not named"
[ "$(wc -l <"$work/errors")" -eq 1 ] || fail "it is told in more than one sentence"
cmp "$work/pages/1.tif" "$work/disk/out/Scan1.tif" || fail "the page before is not whole"
[ ! -e "$work/disk/out/Scan3.tif" ] || fail "it went on after the failure"
