# Gives a test a small disk that only the test and its Wine session see. To be sourced, with the test's own arguments:
#   disk_size=SIZE
#   . small_disk.sh            within TEST.sh WINE_RUN FOLDER PROGRAM
# The disk is at $work/disk; $work goes away with the test. Ends the test with 77 where the system does not allow such a
# disk.

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
work=$(mktemp -d)
trap 'WINEPREFIX="$folder/wine-null" wineserver -k 2>/dev/null || :; umount "$work/disk" 2>/dev/null || :; rm -rf "$work"' EXIT

mkdir "$work/disk"
mount -t tmpfs -o size="$disk_size" tmpfs "$work/disk" 2>/dev/null || {
    echo "No small disk here: not tested."
    exit 77
}
# A session from before would not see the disk.
WINEPREFIX="$folder/wine-null" wineserver -k 2>/dev/null || :

fail() {
    echo "${0##*/}: $*"
    exit 1
}
