# shellcheck shell=bash
# What the scripts of this folder share; sourced, not run. Sets top to the project's top folder and
# answers -h and --help, for which every script has a comment at its head.

set -euo pipefail
unset CDPATH

top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

# Builds and tests write plain lines, on a terminal as well as into a log.
export TERM=dumb CLICOLOR=0 GTEST_COLOR=no

say() {
    printf '== %s\n' "$*"
}

case ${1:-} in
    -h | --help)
        sed -n '2,${/^#/!q; s/^# \{0,1\}//; p}' "$0"
        exit 0
        ;;
esac

# refuse TEXT: for arguments that the script does not know.
refuse() {
    printf '%s: %s; --help tells more\n' "$(basename "$0")" "$*" >&2
    exit 2
}

# The first run may have been made by root: better said here than by a program that fails to write.
need_writable() {
    local directory
    for directory in "$@"; do
        [[ ! -e $directory || -w $directory ]] ||
            fail "$directory belongs to $(stat -c %U "$directory"), and you may not write there:" \
                "go on as that user, or remove it"
    done
}

fail() {
    printf '%s: %s\n' "$(basename "$0")" "$*" >&2
    exit 1
}

# All C and C++ sources of the project, by their absolute names, each ended by a zero byte.
sources() {
    find "$top"/{ntk,perflib,perf,tools,guard,common,compare,report,bench,fuzz,tests} -name '*.[ch]' -print0 -o -name '*.cpp' -print0
}

# configure PRESET [OPTION...]: makes the build tree unless it is there and newer than the presets.
configure() {
    local preset=$1 tree=$top/build/$1
    shift
    # Ninja configures again by itself when a CMakeLists.txt changes, but it does not know the
    # presets.
    if (($# > 0)) || [[ ! -f $tree/build.ninja || $top/CMakePresets.json -nt $tree/build.ninja ]]; then
        say "configuring preset $preset in build/$preset"
        (cd "$top" && cmake --preset "$preset" "$@" </dev/null)
    fi
}

# alone DIRECTORY COMMAND...: runs it while no other script has the directory, for which it waits.
alone() (
    mkdir -p "$1"
    exec 9<"$1"
    flock --nonblock 9 || {
        say "waiting for another script, which works in ${1#"$top/"}"
        flock 9
    }
    "${@:2}"
)

# build PRESET [TARGET...]: brings the build tree up to date, all of it when no target is named.
build() {
    alone "$top/build/$1" build_alone "$@"
}

build_alone() {
    local preset=$1
    shift
    configure "$preset"
    say "building preset $preset: ${*:-everything}"
    (cd "$top" && cmake --build --preset "$preset" --parallel "$(nproc)" \
        ${1:+--target "$@"} </dev/null)
}

# run_tests PRESET: prints what CTest prints and returns its status.
run_tests() {
    say "testing preset $1"
    (cd "$top" && ctest --preset "$1" --parallel "$(nproc)" </dev/null)
}
