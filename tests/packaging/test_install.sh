#!/usr/bin/env bash
# An installation into a folder of its own: its programs find each other and their libraries there,
# and a program of somebody else is built with it.
#
#   test_install.sh CMAKE BUILD EXAMPLE OTHER_LIBRARIES CXX_FLAGS
#
# EXAMPLE is the source folder to build, OTHER_LIBRARIES has another build of the measured library.

set -uo pipefail

cmake=$1 build=$2 example=$3 other=$4 flags=$5
room=$(mktemp -d)
trap 'rm -rf "$room"' EXIT
prefix="$room/a prefix"
quick=(-B -f=ntksAdler32_8u -dCodeLength=1000 -dMethod=Manual -dNumLoops=1)
failures=0
unset LD_LIBRARY_PATH

# expect WHAT ACTUAL PATTERN: PATTERN is one of the shell, for the whole text.
expect() {
    # shellcheck disable=SC2053 # a pattern
    [[ $2 == $3 ]] && return
    printf -- '-- %s:\n%s\n-- is not as wanted:\n%s\n' "$1" "$2" "$3"
    failures=$((failures + 1))
}

refuse() {
    echo "-- $1:"
    cat "$room/log"
    exit 1
}

library_dir() {
    dirname "$(find "$prefix" -name libntkdc.so.12)"
}

test_places() {
    local file
    for file in bin/ntk{perf,compare,guard,corpus} libexec/ntkperf/ntkturns include/ntkperf/kx.h \
        include/ntk/ntkdc.h share/man/man1/ntkperf.1.gz share/doc/ntkperf/docs/guide.md \
        share/bash-completion/completions/ntkperf share/ntkperf/slurm/submit.sh; do
        [[ -e $prefix/$file ]] || expect "$file" missing installed
    done
}

test_programs_use_what_lies_with_them() {
    local own
    own=$(library_dir)
    expect "libraries" "$(ldd "$prefix/bin/ntkperf")" \
        "*libntkdc.so.12 => $prefix/*libntkcore.so.12 => $prefix/*"
    expect "a run" "$("$prefix/bin/ntkguard" ntkperf "${quick[@]}")" '*.Successes      : 1*'
    expect "the own libraries in LD_LIBRARY_PATH" \
        "$(LD_LIBRARY_PATH=$own "$prefix/bin/ntkperf" "${quick[@]}")" '*.Successes      : 1*'
    expect "another build in LD_LIBRARY_PATH" \
        "$(LD_LIBRARY_PATH=$other "$prefix/bin/ntkperf" "${quick[@]}")" \
        "*-- libntkdc.so.12 was loaded from $other/*"
    LD_LIBRARY_PATH=$own "$prefix/bin/ntkperf" "${quick[@]}" | grep 'was loaded from' &&
        expect "the own libraries" "named as another build" "not named"
}

# Without a cluster: what a dry run asks for is an empty queue.
test_the_jobs_of_a_cluster_find_the_programs() {
    mkdir -p "$room/bin" "$room/corpus"
    printf text >"$room/corpus/text"
    printf '#!/bin/sh\n' | tee "$room/bin/squeue" >"$room/bin/scontrol"
    chmod +x "$room/bin/"*
    expect "a submission" "$(PATH=$room/bin:$PATH "$prefix/share/ntkperf/slurm/submit.sh" \
        --results "$room/results" --corpus "$room/corpus" --build own --kind any \
        --group adler=-fAdler --dry-run 2>&1)" "== 1 cell: *
sbatch *measure.sh*"
}

test_comparison_finds_worker_and_libraries() {
    "$prefix/bin/ntkcompare" -q -t 0.05 "--json=$room/comparison.json" own own -- \
        -f=ntksAdler32_8u -dCodeLength=1000 >"$room/log" 2>&1
    (($? <= 1)) || refuse "ntkcompare own own"
    expect "files of own" "$(grep -o '"[^"]*libntkdc.so.12"' "$room/comparison.json" | sort -u)" \
        "\"$prefix/*"
    "$prefix/bin/ntkcompare" -q -t 0.02 --self >"$room/log" 2>&1
    (($? <= 1)) || refuse "ntkcompare --self"
}

test_example_builds_outside() {
    cp -r "$example" "$room/example"
    "$cmake" -S "$room/example" -B "$room/example/build" "-DCMAKE_PREFIX_PATH=$prefix" \
        "-DCMAKE_CXX_FLAGS=$flags" >"$room/log" 2>&1 || refuse "configuring the example"
    "$cmake" --build "$room/example/build" >"$room/log" 2>&1 || refuse "building the example"
    expect "the example" "$("$room/example/build/psexample" -B -f=memcpy -dLength=1000)" \
        '*Library  : C library*
memcpy: Length=1000*.Successes      : 1*'
}

"$cmake" --install "$build" --prefix "$prefix" >"$room/log" 2>&1 || refuse "cmake --install"
test_places
test_programs_use_what_lies_with_them
test_the_jobs_of_a_cluster_find_the_programs
test_comparison_finds_worker_and_libraries
test_example_builds_outside
((failures == 0)) && echo "all hold"
