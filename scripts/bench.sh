#!/usr/bin/env bash
# Measures everything on this machine: installs what is missing, builds, takes the corpus and runs
# ntkperf in batch mode from inside the corpus, under ntkguard: a library that ends its process costs
# one test. Ends with a table of one screen and a page to look at, out/report.html.
#
#   scripts/bench.sh                  all functions; the results go to out/
#   scripts/bench.sh --passes N       the same N times, one pass behind the other: what differs
#                                     between them is told, and is in the page
#   scripts/bench.sh ARGUMENT...      arguments for ntkperf in place of the default ones
#   scripts/bench.sh -- ARGUMENT...   the same, also for those that bench.sh would take itself:
#                                     "-- -h" lists all arguments of ntkperf
#   scripts/bench.sh -h, --help       this text
#
# The corpus is the directory $CORPUS, else corpus/ in the project's top folder; without either,
# stand-ins are made in build/corpus.
#
# Results: page report.html, log ntkperf.txt, performance table ntkperf.csv, summary ntkperf_sum.csv,
# records for programs ntkperf.jsonl, each with all passes, in
#   out/            complete, of the latest run
#   out/previous/   complete, of the latest run before in which no test failed
#   out/partial/    what an interrupted run had written
#
# Status: 0 all went well; 1 a test failed, none was run or something is missing (the last line
# says what); 2 an argument is not known; 129, 130, 143 interrupted.

# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"
# shellcheck source-path=SCRIPTDIR source=results.sh
. "$top/scripts/results.sh"

# What ntkperf reads by default.
corpus_files=(bib book1 book2 geo news obj1 obj2 paper1 paper2 pic progc progl progp trans)
ntkperf=$top/build/release/bin/ntkperf
ntkguard=$top/build/release/bin/ntkguard # what ends ntkperf costs one test
ntkreport=$top/build/release/bin/ntkreport
passes=1

# Sets corpus to an absolute path, or to nothing when stand-ins are needed.
find_corpus() {
    corpus=
    if [[ -n ${CORPUS:-} ]]; then
        corpus=$(cd "$CORPUS" 2>/dev/null && pwd) ||
            fail "CORPUS is '$CORPUS', which is no directory that can be entered"
    elif [[ -d $top/corpus ]]; then
        corpus=$top/corpus
    fi
}

# The names of the files that the corpus lacks; nothing when all are there.
missing_files() {
    local file list=()
    for file in "${corpus_files[@]}"; do
        [[ -f $corpus/$file && -r $corpus/$file ]] || list+=("$file")
    done
    printf '%s' "${list[*]}"
}

# The build owns build/corpus: files of an older version of the maker are replaced.
make_stand_ins() {
    corpus=$top/build/corpus
    say "neither CORPUS nor $top/corpus is there: making stand-ins for the corpus"
    "$top/build/release/bin/ntkcorpus" --force "$corpus" | tail -n 1
}

# ntkperf keeps the counter's frequency in the user's cache. Where there is none, as in a container
# or a run by a service, the build takes its place: without it no run would know the MB/s.
ensure_cache() {
    local cache=${XDG_CACHE_HOME:-${HOME:+$HOME/.cache}}
    if [[ -z $cache ]] || ! mkdir -p "$cache/ntkperf" 2>/dev/null || [[ ! -w $cache/ntkperf ]]; then
        export XDG_CACHE_HOME=$top/build/cache
    fi
}

prepare() {
    "$top/scripts/install.sh"
    ensure_cache
    build release ntkperf ntkguard ntkcorpus ntkreport
    [[ -n $corpus ]] || make_stand_ins
    say "corpus: $corpus"
}

# report_failures SUMMARY LOG: ends the script when tests failed.
report_failures() {
    local failed
    failed=$(failed_tests "$1")
    if [[ -n $failed ]]; then
        say "failed: ${failed//$'\n'/, }" | fold -s -w 98
        fail "$(wc -l <<<"$failed") of $(count_tests "$1") tests failed; $2 says why"
    fi
}

# On the console, for whoever answers there. Beside what the arguments ask for, a summary tells
# which tests failed. It is not begun by arguments that run no test (-h, -e), and stays empty when
# ntkperf gives up before the first test, which its status does not tell.
run_with_arguments() {
    local status=0 scratch
    scratch=$(mktemp -d)
    # shellcheck disable=SC2064 # the directory of now
    trap "rm -rf '$scratch'" EXIT
    say "running ntkperf $*"
    (cd "$corpus" && "$ntkguard" "$ntkperf" "$@" "-u$scratch/summary.csv") || status=$?
    ((status == 0)) || fail "ntkperf ended with status $status"
    [[ -e $scratch/summary.csv ]] || return 0
    [[ -s $scratch/summary.csv ]] || fail "nothing was measured; the log above says why"
    report_failures "$scratch/summary.csv" "the log above"
    (($(count_tests "$scratch/summary.csv") > 0)) || fail "no test was run; the log above says why"
}

# Where a person sees it, the place of the log is for how far ntkperf is. Else everything is told as
# it comes: the log of a job is all there is of it.
is_watched() {
    [[ -t 1 && -t 2 ]]
}

# measure PASS: the first makes the files, the others add to them. In the background, because the
# shell hears of a signal while it waits, not while a command runs.
measure() {
    local status=0 log=-o table=-r summary=-u
    (($1 == 1)) || log=-O table=-R summary=-U
    ((passes == 1)) || say "pass $1 of $passes"
    (
        trap '' INT # a terminal sends it to all: this script ends the others
        cd "$corpus"
        ! is_watched || exec >"$running/console"
        exec "$ntkguard" "$ntkperf" -B "$log$running/ntkperf.txt" "$table$running/ntkperf.csv" \
            "$summary$running/ntkperf_sum.csv" "-x$running/pass.jsonl"
    ) </dev/null &
    child=$!
    wait "$child" || status=$?
    ((status == 0)) || give_up "ntkperf ended with status $status"
    local file
    for file in ntkperf.txt ntkperf.csv ntkperf_sum.csv pass.jsonl; do
        [[ -s $running/$file ]] || give_up "ntkperf ended without writing $file"
    done
    join_records
}

run_everything() {
    local pass
    say "running ntkperf; results go to $running until they are complete"
    trap 'interrupted 129' HUP
    trap 'interrupted 130' INT
    trap 'interrupted 143' TERM
    for ((pass = 1; pass <= passes; ++pass)); do
        measure "$pass"
    done
    make_report "$running" || say "there is no page: ntkreport could not make it"
    put_in_place
}

give_up() {
    [[ -s $running/ntkperf.txt || ! -s $running/console ]] || tail -n 20 "$running/console" >&2
    set_apart "$1"
    fail "$1; earlier results are as they were"
}

# At the first signal ntkperf ends in order, after the present call; a call that does not return
# within seconds is worth no waiting: at the second one it ends at once.
end_child() {
    local tries
    kill "$child" 2>/dev/null || true
    for ((tries = 0; tries < 50; ++tries)); do
        kill -0 "$child" 2>/dev/null || break
        sleep 0.1
    done
    kill "$child" 2>/dev/null || true
    wait "$child" || true
}

interrupted() {
    trap '' HUP INT TERM
    end_child
    printf '\n'
    set_apart "interrupted"
    printf 'bench.sh: interrupted; earlier results are as they were\n' >&2
    exit "$1"
}

# The counter's frequency is in a table's title once it has been measured: in that of a first run it
# may be missing, and a second one, of a test that measures nothing, has it.
frequency_mhz() {
    local mhz
    mhz=$(title_mhz "$out/ntkperf.csv")
    if [[ -z $mhz ]]; then
        (cd "$corpus" && "$ntkperf" -B -f=__psHost "-r$out/title.csv") </dev/null >/dev/null || true
        [[ ! -e $out/title.csv ]] || mhz=$(title_mhz "$out/title.csv")
        rm -f "$out/title.csv"
    fi
    printf '%s' "$mhz"
}

# Each pass has its own clock speed, neighbours and memory pages: what differs between them is what a
# figure of one pass may be off by.
show_spread() {
    "$ntkreport" --csv=- "$out/ntkperf.jsonl" | LC_ALL=C awk -f "$top/scripts/spread.awk" ||
        say "the spread between the passes is not known: ntkreport could not tell it"
}

show_results() {
    say "log:               $out/ntkperf.txt"
    say "performance table: $out/ntkperf.csv"
    say "summary:           $out/ntkperf_sum.csv"
    say "for programs:      $out/ntkperf.jsonl"
    LC_ALL=C awk -v mhz="$(frequency_mhz)" -f "$top/scripts/overview.awk" "$out/ntkperf.csv"
    echo
    ((passes == 1)) || show_spread
    [[ ! -e $out/report.html ]] || say "all of it as a page for your browser: $out/report.html"
    report_failures "$out/ntkperf_sum.csv" "$out/ntkperf.txt"
}

case ${1:-} in
    --) shift ;;
    --passes | --passes=*)
        [[ $1 == *=* ]] || set -- "$1=${2:-}" "${@:3}"
        passes=${1#*=}
        [[ $passes =~ ^[1-9][0-9]{0,2}$ ]] || refuse "--passes takes a number from 1 to 999"
        (($# == 1)) || refuse "--passes measures everything, and takes no arguments for ntkperf"
        shift
        ;;
    --*) refuse "'$1' is not known" ;;
esac
for argument in "$@"; do
    [[ $argument == -* ]] || refuse "'$argument' is not known: ntkperf's arguments begin with -"
done
find_corpus
missing=$([[ -z $corpus ]] || missing_files)
if (($# > 0)); then
    [[ -z $missing ]] || say "not in the corpus $corpus: $missing"
elif [[ -n $missing ]]; then
    fail "the corpus $corpus lacks $missing. Nothing was measured: name the directory of these" \
        "files in CORPUS. Stand-ins are made when neither CORPUS nor $top/corpus is there"
fi
need_writable "$top/build" "$top/out"
if (($# == 0)); then
    claim_results
fi
prepare
if (($# > 0)); then
    run_with_arguments "$@"
else
    mkdir "$running"
    run_everything
    show_results
fi
