# Sourced by the commands that measure programs of the benchmarks in Wine. The figures mean something only while the
# machine does nothing else.
source "$(dirname "$(realpath "${BASH_SOURCE[0]}")")/../cmake/steps.sh"

# measure PROGRAM ARGUMENTS: builds the program and runs it over a fresh folder on the disk that the project lies on,
# or in $BENCH_FOLDER, with the look-ups of indexed_lookup.c.
measure() {
    local program=$1
    shift
    # A tree that was configured before the packages were there, as by ./run, lacks the targets that need them.
    quietly "Configuring" configure release
    quietly "Building" build release "$program"
    gcc -O2 -Wall -Wextra -Werror -shared -fPIC -o "$root/build/indexed_lookup.so" "$root/bench/indexed_lookup.c"

    folder=$(mktemp -d "${BENCH_FOLDER:-$root/build}/bench.XXXXXX")
    trap 'rm -rf "$folder"' EXIT
    LD_PRELOAD=$root/build/indexed_lookup.so "$root/cmake/with-display.sh" \
        "$root/cmake/wine-run.sh" "$root/build" "$root/build/release/bin/$program.exe" "Z:$folder" "$@"
}
