#!/usr/bin/env bash
# Tries deploy/slurm with the real daemons: munged, slurmctld and a slurmd for each of four nodes, all
# on this machine and in build/cluster. Submits 24 cells; a node loses its power while it measures, a
# task is preempted, one crashes at each try. Then the cause of the crash is mended and a second
# submission measures what is missing. The merged table has to hold each combination that is
# expected, once. By hand: it takes some two minutes, and unshare (of util-linux) has to be allowed.
#
#   scripts/cluster-test.sh               takes no arguments
#   scripts/cluster-test.sh -h, --help    this text
#
# The daemons are taken down at the end, however it comes. The results stay in build/cluster/results,
# what the daemons said in build/cluster.

# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"
# shellcheck source-path=SCRIPTDIR source=cluster.sh
. "$top/scripts/cluster.sh"

(($# == 0)) || refuse "'$1' is not known: takes no arguments"
results=$cluster/results
bin=$top/build/release/bin
corpus=$top/build/corpus
keys=(-dMethod=Manual "-dCodeLength=16384;32768" "-dCodeFile=bib;book1")
# Those of LZSS take several seconds, in which a node can die.
declare -A groups=([checksum]="-m=p_dcchecksum_ia" [deflate]="-m=p_dclz77deflate_ia"
    [lz4]="-m=p_dclz4" [lzo]="-m=p_dclzo_ia" [lzss]="-m=p_dclzss_ia -dNumLoops=5000"
    [zfp]="-m=p_dczfp")

submit() {
    local group arguments=()
    for group in "${!groups[@]}"; do
        arguments+=(--group "$group=${groups[$group]}")
    done
    say "deploy/slurm/submit.sh ..."
    "$top/deploy/slurm/submit.sh" --results "$results" --corpus "$corpus" --build base=own \
        --build "trial=$top/build/release/tests/system/deeds/deeds" --kind older --kind newer \
        "${arguments[@]}" -- "${keys[@]}" | sed 's/^== /   /'
}

# is_measuring CELL: its task has written down a measurement.
is_measuring() {
    grep -qs '"record":"measurement"' "$results/tries/$1"/*/ntkperf.jsonl
}

# The node that is named in what the task of a cell said last.
node_of() {
    grep -h " $1: try on" "$results"/submissions/*/*.txt | tail -n 1 | sed 's/.* //'
}

cut_power() {
    local node
    await "a task to measure" is_measuring older/base/lzss
    node=$(node_of older/base/lzss)
    kill_node "$node"
    say "$node lost its power while it measured older/base/lzss"
}

preempt() {
    local node
    await "a task to measure" is_measuring newer/base/lzss
    node=$(node_of newer/base/lzss)
    sbatch --parsable --partition=urgent --nodelist="$node" --exclusive --output=/dev/null \
        --wrap "sleep 1" >"$cluster/urgent"
    say "a job of more urgency took $node while it measured newer/base/lzss"
}

queue_is_empty() {
    [[ -z $(squeue --noheader) ]]
}

# combinations TABLE: of ntkreport, "BUILD KIND FUNCTION TYPES PARAMETERS" a line.
combinations() {
    tail -n +2 "$1" | sed -E 's/^"?([a-z]+)[^,]* on (older|newer) [^,"]*"?,/\1,\2,/' |
        cut -d , -f 1-4,7 | tr , ' ' | LC_ALL=C sort
}

# What has to be there: the combinations of a run of all groups on this machine, without Slurm, for
# each build and kind.
expect_combinations() {
    local sources build kind
    read -r -a sources <<<"${groups[*]}"
    (cd "$corpus" && "$bin/ntkperf" -B "${keys[@]}" "${sources[@]}" -dNumLoops=1 \
        "-x$cluster/plain.jsonl") >"$cluster/plain.log" </dev/null
    "$bin/ntkreport" "--csv=$cluster/plain.csv" "$cluster/plain.jsonl"
    for build in base trial; do
        for kind in older newer; do
            sed 1d "$cluster/plain.csv" | sed "s/^/$build,$kind/" | cut -d , -f 1-4,7 | tr , ' '
        done
    done | LC_ALL=C sort >"$cluster/expected"
}

# differences TABLE [PATTERN]: between what is expected, but for the pattern, and the table.
differences() {
    combinations "$1" >"$cluster/found"
    grep -v "${2:-^$}" "$cluster/expected" | diff - "$cluster/found"
}

# A check that cannot fail would be none: the same, of cells one of which is missing or there twice.
check_the_check() {
    local broken=$cluster/broken cell=cells/older/base/lz4
    rm -rf "$broken" && cp -r "$results" "$broken"
    rm -r "${broken:?}/$cell"
    expect_complaint 'older/base/lz4 missing'
    if differences "$broken/merged/table.csv" >"$cluster/broken.diff"; then
        fail "nobody saw in the table that $cell is missing"
    fi
    cp -r "$results/$cell" "$broken/$cell"
    sed 's/"clocks_per_unit":[0-9]/&1/' "$results/$cell/ntkperf.jsonl" >>"$broken/$cell/ntkperf.jsonl"
    expect_complaint 'some were measured twice'
    say "the check sees a cell that is missing and one that is there twice"
}

# expect_complaint TEXT: of the merge of what was broken.
expect_complaint() {
    if "$top/deploy/slurm/merge.sh" --results "$cluster/broken" >"$cluster/broken.log" 2>&1; then
        fail "the merge saw nothing: $1"
    fi
    grep -q "$1" "$cluster/broken.log" || fail "the merge did not say '$1'; see $cluster/broken.log"
}

# tries_of CELL: how its tries ended that are not the last one.
tries_of() {
    find "$results/tries/$1" -mindepth 1 -maxdepth 1 -type d 2>/dev/null | sort |
        while IFS= read -r try; do
            cat "$try/why" 2>/dev/null || echo "ended with its node"
        done | cut -d : -f 1 | sed 's/ on n[1-4]//' | paste -s -d ,
}

expect_tries() {
    [[ $(tries_of "$1") == "$2" ]] || fail "the tries of $1 ended as '$(tries_of "$1")', not '$2'"
    say "tries of $1 that are kept: $2"
}

check_pinning() {
    local processors
    processors=$(cat "$results"/cells/*/*/*/cell.txt | sed -n 's/^processors //p' | sort | uniq -c |
        awk '{ printf "%s%s cells on processors %s", sep, $1, $2; sep = ", " }')
    [[ $processors == "12 cells on processors 0, 12 cells on processors 0-1" ]] ||
        fail "the cells were not on one core each: $processors"
    say "pinned to one core, which has one thread or two: $processors"
}

run_first_submission() {
    # The library kills what watches over it: nothing that ntkguard could survive.
    echo 'export NTK_DEEDS=ntksEncodeZfp444_32f parent 9' |
        tee "$cluster/environment.n3" >"$cluster/environment.n4"
    submit
    cut_power
    preempt
    await "the end of all jobs" queue_is_empty
    sed 's/^/   /' "$results/submissions/1/merge.txt"
    differences "$results/merged/table.csv" '^trial newer ntks[DE].*Zfp' ||
        fail "the first table is not what 23 cells should give"
    say "the table has all combinations of 23 cells, once each"
    expect_tries older/base/lzss "ended with its node"
    expect_tries newer/base/lzss "interrupted"
    expect_tries newer/trial/zfp "failed,failed,failed"
}

run_second_submission() {
    rm "$cluster"/environment.*
    say "the cause of the crash is mended"
    submit
    submit
    [[ ! -e $results/submissions/3 ]] || fail "what was under way was submitted again"
    await "the end of all jobs" queue_is_empty
    sed 's/^/   /' "$results/submissions/2/merge.txt"
    differences "$results/merged/table.csv" ||
        fail "the table is not what 24 cells should give"
    say "the table has all $(wc -l <"$cluster/expected") combinations of 24 cells, once each"
}

"$top/scripts/install.sh" --cluster
build release ntkperf ntkguard ntkreport ntkcorpus deeds
"$bin/ntkcorpus" --force "$corpus" >/dev/null
start_cluster
say "four nodes: $(sinfo --noheader --partition=measuring --format='%N %f %t' | paste -s -d ,)"
expect_combinations
run_first_submission
run_second_submission
check_pinning
check_the_check
say "all as it should be"
