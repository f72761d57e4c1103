#!/usr/bin/env bash
# The scripts as their users call them, in a project of their own: they are copied, the programs that
# install and build do nothing, ntkperf is the one beside this file.
#
#   test_bench.sh NTKPERF NTKGUARD PSDEEDS    the real program, which knows its default files and
#                                             its functions; the real one that watches over it;
#                                             one whose tests end their process

set -uo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
ntkperf=$1 ntkguard=$2 psdeeds=$3
room=$(mktemp -d)
trap 'rm -rf "$room"' EXIT
project="$room/a project"
out=$project/out
corpus="$room/the corpus"
export STARTED=$room/started
failures=0

make_project() {
    mkdir -p "$project/build/release/bin" "$room/bin" "$corpus"
    cp -r "$here/../../scripts" "$project"
    touch "$project/CMakePresets.json" "$project/build/release/build.ninja"
    cp "$here/ntkperf" "$here/ntkreport" "$project/build/release/bin"
    ln -s "$ntkguard" "$project/build/release/bin"
    printf '#!/bin/sh\necho installed\n' >"$room/bin/dpkg-query"
    printf '#!/bin/sh\necho "cmake $*"\n' | tee "$room/bin/cmake" >"$room/bin/ctest"
    chmod +x "$room/bin/"*
    export PATH=$room/bin:$PATH
    (cd "$corpus" && touch bib book1 book2 geo news obj1 obj2 paper1 paper2 pic prog{c,l,p} trans)
}

# expect WHAT ACTUAL PATTERN: PATTERN is one of the shell, for the whole text.
expect() {
    # shellcheck disable=SC2053 # a pattern
    [[ $2 == $3 ]] && return
    printf -- '-- %s:\n%s\n-- is not as wanted:\n%s\n' "$1" "$2" "$3"
    failures=$((failures + 1))
}

# bench ARGUMENT...: sets output and status. From another directory, and without HOME.
bench() {
    output=$(cd / && env -u HOME -u XDG_CACHE_HOME CORPUS="${files:-$corpus}" RUN="${run:-}" \
        PLAY="${play:-}" "$project/scripts/bench.sh" "$@" 2>&1 </dev/null)
    status=$?
}

# The runs that are in the page of a directory, "none" when there is no page.
runs_in_page() {
    cat "$1/report.html" 2>/dev/null || echo none
}

# The run whose results are there, or "none".
run_in() {
    sed -n 's/^Start,//p' "$1/ntkperf.csv" 2>/dev/null | paste -s -d + || echo none
}

test_help_and_unknown_arguments() {
    local script key
    for script in bench check cluster-test format fuzz install measuring mutate nightly package \
        package-test same-output tidy valgrind; do
        for key in -h --help; do
            output=$("$project/scripts/$script.sh" "$key" 2>&1)
            expect "$script.sh $key" "$? $output" "0 [A-Z]*  scripts/$script.sh*"
            expect "$script.sh $key is text alone" "$output" '[!#]*[!}]'
        done
        output=$("$project/scripts/$script.sh" --nonsense 2>&1)
        expect "$script.sh --nonsense" "$? $output" "2 $script.sh: *; --help tells more"
    done
    bench book1
    expect "a word that is no key" "$status $output" "2 *'book1' is not known*"
    bench -- -h
    expect "what follows --" "$status $output" "0 *== running ntkperf -h*ntkperf -h -u*"
}

# expect_wait DIRECTORY BEFORE: another one works in it; BEFORE is all that is said until then. What
# would not wait ends without the line that is read.
expect_wait() {
    local line
    output=
    exec 8<"$project/$1"
    flock 8
    mkfifo "$room/said"
    "$project/scripts/fuzz.sh" 1 one >"$room/said" 2>&1 8<&- &
    exec 7<"$room/said"
    while read -r line <&7 && [[ $line != *waiting* ]]; do
        output+=$line$'\n'
    done
    expect "what it waits for" "$line" "== waiting for another script, which works in $1"
    expect "before $1" "$output" "$2"
    until grep -q -- "-> FLOCK .*:$(stat -c %i "$project/$1") " /proc/locks; do
        kill -0 $! 2>/dev/null || {
            expect "$1" 'is not waited for' 'is waited for'
            break
        }
        sleep 0.02
    done
    exec 8<&-
    expect "behind $1" "$(cat <&7)" "*one * 7 inputs, nothing found*"
    exec 7<&-
    rm "$room/said"
}

test_fuzzers_started_twice_wait_for_each_other() {
    local fuzz=$project/build/fuzz
    mkdir -p "$project/fuzz/decoders" "$fuzz/bin" "$fuzz/corpus/one"
    touch "$project/fuzz/decoders/one.cpp" "$fuzz/build.ninja"
    printf '#!/bin/sh\necho stat::number_of_executed_units: 7\n' >"$fuzz/bin/fuzz_one"
    chmod +x "$fuzz/bin/fuzz_one"
    expect_wait build/fuzz $'== all needed packages are installed\n'
    expect_wait build/fuzz/corpus/one "*cmake --build --preset fuzz*"
}

# The status of ntkperf is 0 here too.
test_nothing_measured_is_told() {
    play=refusing bench -B -o
    expect "no output file" "$status $output" "1 *bench.sh: nothing was measured; the log above*"
    play=idle bench -fNoSuch
    expect "no test" "$status $output" "1 *bench.sh: no test was run; the log above*"
}

test_the_frequency_is_kept_without_a_home() {
    bench -B
    expect "the cache without HOME" "$output" "*
cache $project/build/cache*"
    output=$(CORPUS=$corpus HOME=$room XDG_CACHE_HOME='' "$project/scripts/bench.sh" -B 2>&1)
    expect "the cache in HOME" "$output" "*
cache -*"
}

test_a_corpus_without_its_files() {
    mkdir -p "$room/empty" && cp "$corpus/bib" "$corpus/geo" "$room/empty"
    files=$room/empty bench
    expect "missing files" "$status $output" \
        "1 bench.sh: the corpus $room/empty lacks book1 book2 news * trans. Nothing was measured*"
    files=$room/empty bench -e
    expect "missing files, with arguments" "$status $output" \
        "0 *not in the corpus*: book1 *ntkperf -e -u*"
    files=$room/nowhere bench
    expect "no directory" "$status $output" "1 *'$room/nowhere', which is no directory*"
}

test_the_corpus_is_what_ntkperf_reads() {
    local files
    "$ntkperf" -B -f=ntksEncodeLZ4_8u "-I$room/defaults.ini" >"$room/log"
    files=$(sed -n 's/; / /g; s/^CodeFile=//p' "$room/defaults.ini" | head -n 1)
    expect "corpus_files" "$(grep '^corpus_files=' "$project/scripts/bench.sh")" \
        "corpus_files=($files)"
}

test_results_move_when_new_ones_are_complete() {
    local table=$out/partial/ntkperf.csv
    run=first play=early bench
    expect "first run" "$status $output" \
        "0 *Clocks of 1 functions*ntksAdler32_8u *40000*at 2000 MHz

== all of it as a page for your browser: $out/report.html"
    expect "first run, files" "$(cd "$out" && echo *)" \
        "ntkperf.csv ntkperf.jsonl ntkperf.txt ntkperf_sum.csv report.html"
    run=second bench
    expect "results" "$(run_in "$out") $(run_in "$out/previous")" "second first"
    expect "pages" "$(runs_in_page "$out") $(runs_in_page "$out/previous")" "<p>second</p> <p>first</p>"
    run=third play=crashing bench
    expect "a crash" "$status $output" "1 *out/partial*ntkperf ended with status 3*"
    expect "the table of a crash" "$(run_in "$out/partial")" \
        "third  PARTIAL: the run was not finished (ntkperf ended with status 3)"
    expect "lines of its title" "$(grep -n '^Function' "$table")" "6:*"
    expect "its log" "$(tail -n 1 "$out/partial/ntkperf.txt")" "PARTIAL: *"
    expect "its page" "$(runs_in_page "$out/partial")" "<p>third</p>"
    expect "its summary" "$(head -n 1 "$out/partial/ntkperf_sum.csv")" "*  PARTIAL: *"
    expect "results" "$(run_in "$out") $(run_in "$out/previous")" "second first"
}

test_failed_tests_are_told_and_replace_no_good_results() {
    run=fourth play=failing bench
    expect "failed tests" "$status $output" \
        "1 *ntksAdler32_8u (DATAFAIL), ntksBWTFwd_8u (UNDEFINED)*
bench.sh: 2 of 3 tests failed; *"
    expect "results" "$(run_in "$out") $(run_in "$out/previous")" "fourth second"
    run=fifth bench
    expect "results" "$(run_in "$out") $(run_in "$out/previous")" "fifth second"
    play=failing bench -B
    expect "failed tests, with arguments" "$status $output" "1 *bench.sh: 2 of 3 tests failed; *"
    expect "results, with arguments" "$(run_in "$out") $(run_in "$out/previous")" "fifth second"
}

test_several_passes() {
    run=a play='' passes=3 bench --passes 3
    expect "three passes" "$status $output" "0 *== pass 1 of 3
*== pass 3 of 3
*Clocks of 1 functions*
Between the 3 passes the figures spread by 1.0% (the middle one of 3 cases),
most of all those of ntksLZ_8u, by 12.6% on average
== all of it as a page*"
    expect "their rows" "$(grep -c '^ntksAdler32_8u' "$out/ntkperf.csv") $(run_in "$out")" "3 a+a+a"
    expect "their log" "$(cat "$out/ntkperf.txt")" "log of a
log of a
log of a"
    expect "their records" "$(grep -c '"record":"end"' "$out/ntkperf.jsonl")" 3
    expect "their page" "$(runs_in_page "$out")" "<p>a</p><p>a</p><p>a</p>"
    expect "files" "$(find "$out" -name '*pass*')" ""
    run=b play=failing bench --passes=2
    expect "failed tests of two passes" "$status $output" "1 *bench.sh: 2 of 3 tests failed; *"
    for arguments in "--passes" "--passes 0" "--passes=x" "--passes 2 -fLZ4"; do
        # shellcheck disable=SC2086 # words
        bench $arguments
        expect "$arguments" "$status $output" "2 *bench.sh: --passes *"
    done
}

test_without_a_page_the_results_are_there() {
    run=paged bench
    REPORT=none run=pageless bench
    expect "no page" "$status $output" "0 *== there is no page: ntkreport could not make it*"
    expect "the results" "$(run_in "$out") $(runs_in_page "$out") $(runs_in_page "$out/previous")" \
        "pageless none <p>paged</p>"
    REPORT=1 run=odd bench
    expect "something could not be read" "$(runs_in_page "$out") $status" "<p>odd</p> 0"
}

# watched COMMAND...: on a terminal, as script(1) makes one; sets output.
watched() {
    output=$(cd / && CORPUS=$corpus RUN=watched PLAY=${play:-} script -qec "$*" /dev/null </dev/null |
        tr -d '\r')
}

test_a_terminal_shows_how_far_it_is_instead_of_the_log() {
    local bench="'$project/scripts/bench.sh'"
    watched "$bench"
    expect "watched" "$output" "*results go to*1/3 how far it is*== log: *== all of it as a page*"
    expect "the log of it" "$(grep -c '^ntkperf -B' <<<"$output") $(<"$out/ntkperf.txt")" \
        "0 log of watched"
    watched "$bench 2>&1 | cat"
    expect "a pipe behind it" "$output" "*
ntkperf -B*"
    expect "a pipe behind it" "$(grep -c 'how far' <<<"$output")" 0
    play=refusing watched "$bench"
    expect "what was not written to the log" "$output" "*
ntkperf -B *bench.sh: ntkperf ended without writing *"
    expect "left" "$(find "$out" -name console)" ""
}

# await COMMAND...: until it succeeds, or half a minute is over.
await() {
    local tries
    for ((tries = 0; tries < 600; ++tries)); do
        ! "$@" 2>/dev/null || return 0
        sleep 0.05
    done
    expect "within half a minute" "$*" "to succeed"
}

# interrupt SIGNAL PROCESS ARGUMENT...: starts a run that hangs, interrupts it, sets status.
interrupt() {
    local script
    rm -f "$STARTED"
    set -m # a process group of its own, where SIGINT is not ignored
    CORPUS=$corpus RUN=$1 PLAY=${play:-hanging} "$project/scripts/bench.sh" "${@:3}" >"$room/log" 2>&1 &
    script=$!
    set +m
    await test -e "$STARTED"
    [[ $2 != group ]] || script=-$script
    [[ $2 != group ]] || bench
    [[ $2 != group ]] || expect "a second run" "$status $output" "1 *another run writes to $out*"
    kill "-$1" -- "$script"
    wait "${script#-}" 2>/dev/null
    status=$?
    output=$(<"$room/log")
}

test_an_interrupted_run_keeps_what_was_there() {
    local case
    for case in "INT group 130" "TERM script 143" "HUP script 129"; do
        # shellcheck disable=SC2086 # words
        set -- $case
        interrupt "$1" "$2"
        expect "SIG$1" "$status $output" "$3 *: $out/partial*bench.sh: interrupted; *"
        expect "results after SIG$1" "$(run_in "$out") $(run_in "$out/previous")" "fifth second"
        expect "partial after SIG$1" "$(run_in "$out/partial")" \
            "$1  PARTIAL: the run was not finished (interrupted)"
        expect "left after SIG$1" "$(ls "$out/running" 2>/dev/null)" ""
    done
    interrupt KILL group
    run=sixth bench
    expect "after SIGKILL" "$status $(run_in "$out") $(run_in "$out/partial")" \
        "0 sixth KILL  PARTIAL: the run was not finished (killed)"
}

test_an_interrupted_pass_keeps_those_before_it() {
    play=later interrupt TERM script --passes 3
    expect "the second pass" "$status $output" "143 *pass 2 of 3*: $out/partial*"
    expect "partial" "$(run_in "$out/partial")" \
        "TERM+TERM  PARTIAL: the run was not finished (interrupted)"
    expect "its summary" "$(grep -c PARTIAL "$out/partial/ntkperf_sum.csv")" 1
    expect "its records" "$(grep -c '"record":"run"' "$out/partial/ntkperf.jsonl")" 2
    expect "its page" "$(runs_in_page "$out/partial")" "<p>TERM</p><p>TERM</p>"
}

is_over() {
    ! kill -0 "$1"
}

# The one signal that the script gets has to do.
interrupt_a_hanging_call() {
    local script
    set -m
    CORPUS=$corpus DEEDS="beta@65536@call=hang" "$project/scripts/bench.sh" >"$room/log" 2>&1 &
    script=$!
    set +m
    await grep -q 'beta: Length=65536' "$out/running/ntkperf.txt"
    kill -TERM "$script"
    await is_over "$script"
    kill -KILL -- "-$script" 2>/dev/null # what waits for ever
    wait "$script"
    expect "a call that hangs" "$? $(<"$room/log")" "143 *bench.sh: interrupted; *"
    expect "its log" "$(tail -n 1 "$out/partial/ntkperf.txt")" "PARTIAL: *interrupted?"
}

# Of a program whose second of five tests does not end, or does not bear to be called.
test_what_ends_ntkperf_costs_one_test() {
    local bin=$project/build/release/bin
    mv "$bin/ntkperf" "$room/ntkperf"
    ln -s "$psdeeds" "$bin/ntkperf"
    interrupt_a_hanging_call
    DEEDS="beta@262144@call=kill" bench
    expect "a test that ends ntkperf" "$status $output" \
        "1 *failed: beta (EXCPTFAIL)*bench.sh: 1 of [5-9] tests failed; *"
    expect "its table" "$(grep -c '^alpha,\|^beta,\|^delta,\|^gamma,' "$out/ntkperf.csv")" 11
    expect "its line" "$(grep '^beta,.*EXCPTFAIL' "$out/ntkperf.csv")" "beta,-,262144,*,SIGKILL,-"
    DEEDS="beta@262144@call=exit" bench -B -f=alpha -f=beta -f=gamma
    expect "the same, with arguments" "$status $output" "1 *bench.sh: 1 of 3 tests failed; *"
    rm "$bin/ntkperf"
    mv "$room/ntkperf" "$bin/ntkperf"
}

overview() {
    LC_ALL=C awk -f "$project/scripts/overview.awk" "$@"
}

test_the_overview() {
    output=$(overview mhz=2400 "$here/table.csv")
    expect "overview" "$output" "$(<"$here/overview.txt")"
    output=$(overview "$here/table.csv")
    expect "overview without a frequency" "$output" "*No MB/s: *"
    expect "figures without a frequency" "$output" "*
ntksBWTFwd_8u                    3  byte               52.9    9.00     105      -
*"
    output=$({
        printf 'Function,Clocks,Ratio\n'
        "$ntkperf" -e- | sed -n 's/^ *\(ntks[A-Za-z0-9_]*\) *$/\1,1234567,123.4/p'
    } | overview mhz=2400 -)
    expect "all functions" "$output" "*of [1-9]? functions*ntksAdler32_8u *"
    expect "lines of a screen" "$(($(wc -l <<<"$output") <= 45))" 1
    expect "columns of a screen" "$(grep -c '.\{101\}' <<<"$output")" 0
}

make_project
test_nothing_measured_is_told
test_the_frequency_is_kept_without_a_home
test_help_and_unknown_arguments
test_fuzzers_started_twice_wait_for_each_other
test_a_corpus_without_its_files
test_the_corpus_is_what_ntkperf_reads
test_results_move_when_new_ones_are_complete
test_failed_tests_are_told_and_replace_no_good_results
test_an_interrupted_run_keeps_what_was_there
test_an_interrupted_pass_keeps_those_before_it
test_what_ends_ntkperf_costs_one_test
test_several_passes
test_without_a_page_the_results_are_there
test_a_terminal_shows_how_far_it_is_instead_of_the_log
test_the_overview
((failures == 0)) && echo "all passed"
