#!/bin/sh
# Exports to a disk that gets full: a small one that only this script and its Wine session see.
#   full_disk.sh WINE_RUN FOLDER DESKTOP_TESTS
# Ends with 77 where the system does not allow such a disk.
set -eu

disk_size=256k
. "$(dirname "$0")/../support/small_disk.sh"

for target in Folder Archive; do
    SMALL_DISK="Z:$(echo "$work/disk" | tr / '\\')" \
        "$wine_run" "$folder" "$3" --gtest_filter="DesktopFullDiskTest.*$target" >"$work/told" || {
        cat "$work/told"
        fail "the test of the $target failed"
    }
    grep -q '\[  PASSED  \] 1 test' "$work/told" || fail "the test of the $target did not run"
    rm -r "$work/disk"/*
done
