#!/bin/sh
# Exports to a disk that gets full: a small one that only this script and its Wine session see.
#   full_disk.sh WINE_RUN FOLDER SCANEXPORT
# Ends with 77 where the system does not allow such a disk.
set -eu

disk_size=256k
. "$(dirname "$0")/../support/small_disk.sh"
scanexport=$3

mkdir "$work/pages"
head -c 20000 /dev/urandom >"$work/pages/1.tif"
head -c 400000 /dev/urandom >"$work/pages/2.tif"
head -c 100 /dev/urandom >"$work/pages/3.tif"

shell=
program=$scanexport
# Exports to the small disk, which must fail in one sentence.
export_to_disk() {
    status=0
    "$wine_run" "$folder" $shell "$program" --lang en "$@" "$work/pages" 2>"$work/errors" || status=$?
    cat "$work/errors"
    [ $status -eq 1 ] || fail "exit code $status instead of 1"
    [ "$(wc -l <"$work/errors")" -eq 1 ] || fail "it is told in more than one sentence"
}

export_to_disk --to-dir "$work/disk/out" --prefix Scan --digits 1
grep -q '2\.tif was not exported: the disk of .*\\disk\\out is full, and .*\\Scan2\.tif is incomplete\.$' \
    "$work/errors" || fail "the page, the reason and the incomplete file are not named"
cmp "$work/pages/1.tif" "$work/disk/out/Scan1.tif" || fail "the page before is not whole"
[ ! -e "$work/disk/out/Scan3.tif" ] || fail "it went on after the failure"

rm -r "$work/disk/out"
printf 'old' >"$work/disk/scans.zip"
export_to_disk --to-zip "$work/disk/scans.zip" --prefix Scan
grep -q '2\.tif was not exported: it could not be added to .*\\disk\\scans\.zip; the log says why\.$' "$work/errors" ||
    fail "the page and the archive are not named"
unzip -qqt "$work/disk/scans.zip" || fail "the archive cannot be read"
[ "$(unzip -Z1 "$work/disk/scans.zip")" = Scan1.tif ] || fail "the archive does not hold the page before the failure"
unzip -p "$work/disk/scans.zip" Scan1.tif | cmp "$work/pages/1.tif" - || fail "the packed page is not whole"
[ "$(cat "$work/disk/scans.zip.bak")" = old ] || fail "the archive from before is gone"
[ "$(ls "$work/disk" | wc -l)" -eq 2 ] || fail "something else is left behind"

# The attachments are copied to the temporary files.
rm "$work/disk"/*
windows_disk=Z:$(echo "$work/disk" | tr / '\\')
printf '@set TMP=%s\r\n@"Z:%s" %%*\r\n' "$windows_disk" "$(echo "$scanexport" | tr / '\\')" >"$work/mail.bat"
shell="cmd.exe /c"
program=Z:$(echo "$work/mail.bat" | tr / '\\')
export_to_disk --to-mail --subject Scan
grep -q '2\.tif was not exported: the disk of the temporary files is full\.$' "$work/errors" ||
    fail "the page and the reason are not named"
