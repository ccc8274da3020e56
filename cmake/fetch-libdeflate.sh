#!/bin/sh
# Puts the pinned source of libdeflate into the user's cache, from Debian's source package, and prints its path.
#   fetch-libdeflate.sh
# Asks the network only when the cache lacks it. Debian's package for this target does not exist, and the
# machine's own package sources rarely list source packages: a copy of them that does is used for the one request.
set -eu

source=libdeflate=1.14-1
archive=libdeflate_1.14.orig.tar.gz
sha256=89e7df898c37c3427b0f39aadcf733731321a278771d20fc553f92da8d4808ac
cache=${XDG_CACHE_HOME:-$HOME/.cache}/BasicExport

is_pinned() {
    [ -f "$1" ] && [ "$(sha256sum <"$1")" = "$sha256  -" ]
}

if is_pinned "$cache/$archive"; then
    echo "$cache/$archive"
    exit 0
fi

if ! command -v apt-get >/dev/null; then
    echo "fetch-libdeflate.sh: there is no apt-get; name an installed libdeflate with -DLIBDEFLATE_ROOT=FOLDER" >&2
    exit 1
fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$cache" "$work/sources.list.d" "$work/lists/partial" "$work/cache/archives/partial" "$work/download"

# Debian's own entries only: other vendors' sources have nothing to do with this package.
: >"$work/sources.list"
for list in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
    [ -f "$list" ] && sed -nE '/debian/s/^deb[[:space:]]/deb-src /p' "$list" >>"$work/sources.list"
done
for list in /etc/apt/sources.list.d/*.sources; do
    [ -f "$list" ] && grep -qi debian "$list" &&
        sed -E 's/^Types:.*/Types: deb-src/' "$list" >"$work/sources.list.d/${list##*/}"
done

apt() {
    apt-get -qq -o Dir::Etc::SourceList="$work/sources.list" -o Dir::Etc::SourceParts="$work/sources.list.d" \
        -o Dir::State::Lists="$work/lists" -o Dir::Cache="$work/cache" -o APT::Sandbox::User=root "$@" >&2
}
apt update
(cd "$work/download" && apt source --download-only --only-source "$source")

if ! is_pinned "$work/download/$archive"; then
    echo "fetch-libdeflate.sh: Debian's source package has no $archive with the expected content" >&2
    exit 1
fi
# Moved in one step, because several builds may do this at the same time.
mv "$work/download/$archive" "$cache/.$archive.$$"
mv "$cache/.$archive.$$" "$cache/$archive"
echo "$cache/$archive"
