# Steps that ./run, ./test and the benchmarks share; sourced by them.
set -euo pipefail
export LC_ALL=C.UTF-8
root=$(dirname "$(dirname "$(realpath "${BASH_SOURCE[0]}")")")

# The fonts are named because a dialog's texts have other widths without them.
packages_to_run=(cmake ninja-build g++-mingw-w64-x86-64-posix wine wine64 fonts-wine fonts-liberation unzip python3)
packages_to_test=(
    "${packages_to_run[@]}" googletest clang clang-format
    libz-mingw-w64-dev p7zip-full libarchive-tools nsis
)

# say TEXT: for the person; standard output belongs to what is run.
say() {
    echo "$*" >&2
}

# quietly TEXT COMMAND...: a step that takes a while: says what it does and how long it took, and shows its
# output only if it fails.
quietly() {
    local text=$1 started=$SECONDS log status=0
    shift
    log=$(mktemp)
    printf '%s ... ' "$text" >&2
    "$@" >"$log" 2>&1 </dev/null || status=$?
    if [ $status -eq 0 ]; then
        say "$((SECONDS - started)) s"
    else
        say "failed"
        cat "$log" >&2
    fi
    rm -f "$log"
    return $status
}

as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    else
        sudo "$@"
    fi
}

apt_get() {
    as_root env DEBIAN_FRONTEND=noninteractive \
        apt-get -qq -y -o Acquire::Retries=3 -o DPkg::Lock::Timeout=300 --no-install-recommends "$@"
}

# install_packages NAME...: installs those that are missing.
install_packages() {
    local installed missing=() name
    installed=$(dpkg-query -W -f '<${Package}>${db:Status-Status}\n' "$@" 2>/dev/null || :)
    for name in "$@"; do
        [[ $installed == *"<$name>installed"* ]] || missing+=("$name")
    done
    [ ${#missing[@]} -ne 0 ] || return 0
    command -v apt-get >/dev/null || {
        say "Please install what Debian calls: ${missing[*]}"
        return 1
    }
    quietly "Reading the package lists" apt_get update
    quietly "Installing ${missing[*]}" apt_get install "${missing[@]}"
}

configure() {
    (cd "$root" && cmake --preset "$1")
}

# build PRESET [TARGET...]
build() {
    local preset=$1
    shift
    (cd "$root" && cmake --build --preset "$preset" ${1:+--target "$@"})
}
