#!/bin/sh
# Writes drafts to a disk that gets full and to one that is read-only: a small one that only this script and its Wine
# session see.
#   refusing_disk.sh WINE_RUN FOLDER DRAFT_TOOL
# Ends with 77 where the system does not allow such a disk.
set -eu

disk_size=64k
. "$(dirname "$0")/../support/small_disk.sh"
draft_tool=$3

head -c 20000 /dev/urandom >"$work/small"
head -c 100000 /dev/urandom >"$work/large"

# Prints the code of a draft with that attachment.
draft() {
    "$wine_run" "$folder" "$draft_tool" write "Z:$work/disk/Drafts" S ' ' page.tif "Z:$work/$1" | tr -d '\r'
}

code=$(draft small)
[ "$code" = 0 ] || fail "a draft that fits has the code $code"
code=$(draft large)
[ "$code" = 4 ] || fail "the code is $code instead of 4 for a full disk"
[ "$(ls "$work/disk/Drafts" | wc -l)" -eq 1 ] || fail "what there was of the draft that did not fit is still there"

mount -o remount,ro "$work/disk"
code=$(draft small)
[ "$code" = 6 ] || fail "the code is $code instead of 6 for a read-only disk"
