#!/usr/bin/env bash
# Shows that two builds of the program write byte for byte the same: runs each of a set of commands
# with both and compares console, error output, exit status and all files that were written.
#
#   scripts/same-output.sh OLD_BUILD NEW_BUILD [PATTERN]
#
# The builds are build trees such as build/release; a basic regular expression chooses some of the
# commands. These are the examples of the table of keys in docs/guide.md and those of
# tests/recorded/runs. Each runs in a directory with the files of tests/recorded/before and the
# stand-ins of the corpus, on a scripted clock (tests/recorded/scripted.c) and, for both builds,
# under the same path, so that the outputs have nothing in them that differs by itself but the day
# of the build, the directory of the libraries and the addresses of memory: these are masked.
#
# The status is 0 when all is the same. What differs is printed and stays in NEW_BUILD/same-output.

# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

recorded=$top/tests/recorded

# The commands, one on a line.
commands() {
    # shellcheck disable=SC2016 # the backticks are those of the guide
    sed -n 's/^| `-[^`]*` | `\(\(ntkperf\|psexample\) [^`]*\)` |.*/\1/p' "$top/docs/guide.md"
    sed '/^#/d; /^$/d' "$recorded/runs"
}

# build_deeds BUILD FOLDER PATTERN: a library that stands before that of the build and does what it
# is asked for, without the functions of the pattern.
build_deeds() {
    local deeds=$top/tests/system/deeds
    mkdir -p "$2"
    sed -nE 's/^NTK_API [^(]*[ *]([A-Za-z0-9_]+)\(.*/FORWARD(\1)/p' "$top"/ntk/include/ntkdc*.h |
        grep -v "$3" >"$2/forwarded.inc"
    "${CXX:-c++}" -std=c++20 -O2 -fPIC -fvisibility=hidden -shared -I"$2" -I"$top/ntk/include" \
        -I"$top/bench/slower" "-DDEEDS_REAL_LIBRARY=\"$1/lib/libntkdc.so.12\"" \
        -Wl,-soname,libntkdc.so.12 -o "$2/libntkdc.so.12" "$deeds/deeds.cpp" "$deeds/commit.cpp"
}

build_helpers() {
    mkdir -p "$work"
    "${CC:-cc}" -std=c11 -D_GNU_SOURCE -O2 -Wall -Wextra -fPIC -shared -I"$top/ntk/include" \
        -o "$work/scripted.so" "$recorded/scripted.c"
    build_deeds "$old" "$work/faulty/old" none
    build_deeds "$new" "$work/faulty/new" none
    build_deeds "$old" "$work/older/old" LZSS
    build_deeds "$new" "$work/older/new" LZSS
    "$old/bin/ntkcorpus" "$work/corpus" >"$work/corpus.log"
}

# One run in the working directory, as the words of a command find it.
ntkperf() {
    start "$here/ntkperf" "$@"
}
psexample() {
    start "$here/psexample" "$@"
}
# with NAME=VALUE... PROGRAM ARGUMENT...: sets variables of the program's environment.
with() {
    local -a variables=()
    while [[ $1 == *=* ]]; do
        variables+=("$1")
        shift
    done
    "$@"
}
# As above, with the library whose functions fail on demand, and with one that lacks some.
faulty() {
    libraries=$work/faulty/$side:$libraries "$@"
}
older() {
    libraries=$work/older/$side:$libraries "$@"
}
start() {
    timeout 60 env "${fixed[@]}" LD_LIBRARY_PATH="$libraries" LD_PRELOAD="$work/scripted.so" \
        "${variables[@]}" "$@"
}

# Masks in one file the day of the build, where the libraries lie and addresses of memory, these but
# for the last digit, which tells the alignment.
mask() {
    LC_ALL=C sed -E -i \
        -e 's/\b(Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec) [ 0-9][0-9] 20[0-9]{2}\b/DAY/g' \
        -e 's#(was loaded from ).*/(lib[^/]*)$#\1LIBRARIES/\2#' \
        -e 's#(the library has no function [^(]*\()[^)]*#\1LIBRARIES#' \
        -e 's/( (address|alignedPointer)):[0-9A-F]*([0-9A-F])\b/\1:ADDRESS\3/g' "$1"
}

# record BUILD RESULT COMMAND: runs the command in $here and moves what it wrote to RESULT.
record() {
    local build=$1 result=$2 side=${2##*/} file
    local libraries=$build/lib
    local -a variables=()
    local -a fixed=(LC_ALL=C TZ=UTC COLUMNS=80 MALLOC_PERTURB_=165 XDG_CACHE_HOME="$here/cache")
    mkdir -p "$work/run" "$result" && cp -r "$recorded/before" "$here" &&
        cp "$build/bin/ntkperf" "$build/bin/psexample" "$here" &&
        ln -s "$work/corpus/"* "$here" || exit 255 # which stops xargs
    (cd "$here" && eval "$3") </dev/null >"$result/stdout" 2>"$result/stderr"
    printf '%s\n' $? >"$result/status"
    find "$here" -type l -delete
    rm -f "$here/ntkperf" "$here/psexample"
    mv "$here" "$result/files" || exit 255
    while IFS= read -r -d '' file; do
        mask "$file"
    done < <(find "$result" -type f -print0)
}

# run_both NUMBER COMMAND: prints what differs, and nothing else.
run_both() {
    local here=$work/run/$1 results=$work/results/$1
    set +e
    mkdir -p "$results"
    printf '%s\n' "$2" >"$results/command"
    record "$old" "$results/old" "$2"
    record "$new" "$results/new" "$2"
    if (cd "$results" && diff --text --recursive --new-file --unified=1 old new) \
        >"$results/difference"; then
        rm "$results/difference"
    else
        printf -- '-- differs: %s\n' "$2"
        head -n 20 "$results/difference"
    fi
}

(($# == 2 || $# == 3)) || refuse "usage: scripts/same-output.sh OLD_BUILD NEW_BUILD [PATTERN]"
for tree in "$1" "$2"; do
    for program in ntkperf psexample ntkcorpus; do
        [[ -x $tree/bin/$program ]] || fail "$tree/bin/$program is not there: build $tree first"
    done
done
old=$(cd "$1" && pwd)
new=$(cd "$2" && pwd)
work=$new/same-output
rm -rf "$work"
build_helpers
commands | grep -e "${3:-}" >"$work/commands" || fail "no command matches $3"
export old new work recorded
export -f run_both record mask start ntkperf psexample with faulty older

count=$(wc -l <"$work/commands")
say "$count commands, each with $old and $new"
# shellcheck disable=SC2016 # expanded by the shells of xargs
nl -ba -w1 -s$'\t' "$work/commands" | tr '\t\n' '\0\0' |
    xargs -0 -n 2 -P "$(nproc)" bash -c 'run_both "$1" "$2"' bash
differing=$(find "$work/results" -name difference | wc -l)
if ((differing > 0)); then
    fail "$differing of $count commands differ; the outputs are in $work/results"
fi
rm -rf "$work/run" "$work/results"
say "all outputs of $count commands are the same"
