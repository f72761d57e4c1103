#!/usr/bin/env bash
# Measures everything on this machine: installs what is missing, builds, takes the corpus and runs
# ntkperf in batch mode from inside the corpus. Log, performance table and summary go to out/.
#
#   scripts/bench.sh               all functions
#   scripts/bench.sh ARGUMENT...   arguments for ntkperf in place of the default ones
#
# The corpus is the directory $CORPUS, else corpus/ in the project's top folder; without either,
# stand-ins are made in build/corpus.

# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

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

# The build owns build/corpus: files of an older version of the maker are replaced.
make_stand_ins() {
    corpus=$top/build/corpus
    say "neither CORPUS nor $top/corpus is there: making stand-ins for the corpus"
    "$top/build/release/bin/ntkcorpus" --force "$corpus" | tail -n 1
}

run_ntkperf() {
    local status=0
    say "running ntkperf $*"
    (cd "$corpus" && "$top/build/release/bin/ntkperf" "$@") || status=$?
    if ((status != 0)); then
        printf 'bench.sh: ntkperf ended with status %s\n' "$status" >&2
        exit "$status"
    fi
}

find_corpus
"$top/scripts/install.sh"
build release ntkperf ntkcorpus
[[ -n $corpus ]] || make_stand_ins
say "corpus: $corpus"

if (($# > 0)); then
    run_ntkperf "$@"
    exit 0
fi

out=$top/out
# A run that fails must not cost the results of the one before.
mkdir -p "$out/previous"
for file in ntkperf.txt ntkperf.csv ntkperf_sum.csv; do
    [[ ! -e $out/$file ]] || mv -f "$out/$file" "$out/previous/$file"
done
run_ntkperf -B "-o$out/ntkperf.txt" "-r$out/ntkperf.csv" "-u$out/ntkperf_sum.csv"
for file in ntkperf.txt ntkperf.csv ntkperf_sum.csv; do
    [[ -s $out/$file ]] || fail "ntkperf ended without writing $out/$file"
done
say "log:               $out/ntkperf.txt"
say "performance table: $out/ntkperf.csv"
say "summary:           $out/ntkperf_sum.csv"
