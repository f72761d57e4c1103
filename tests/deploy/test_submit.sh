#!/usr/bin/env bash
# Which cells are submitted, how, and which are not.
#
#   test_submit.sh SCRIPTS PROGRAMS

# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

test_a_dry_run_does_nothing() {
    submit --dry-run -- "${quick[@]}"
    expect "dry run" "$status $output" "0 == 8 cells: 0 measured, 0 under way, 8 to be submitted
new/own/adler
*
old/trial/crc
sbatch *"
    expect "left" "$(ls "$room")" "*corpus
queue
trial"
}

test_an_array_for_each_kind_and_a_merge_behind_them() {
    submit --sbatch=--account=perf -- "${quick[@]}"
    expect "submission" "$status $output" "0 *8 to be submitted
== job 101: 4 cells on new
== job 102: 4 cells on old
== job 103: merges them*"
    expect "jobs" "$(<"$room/jobs")" "*--array=0-3 --constraint=avx&big *--exclusive \
--hint=nomultithread --requeue *--account=perf --wrap *
*--array=0-3 --constraint=old *
*--dependency=afterany:101:102 *--account=perf --wrap *merge.sh*"
    expect "cells" "$(<"$results/submissions/1/old-01.cells")" "old/own/adler
old/own/crc
old/trial/adler
old/trial/crc"
}

test_what_is_under_way_is_not_submitted() {
    printf '%s\n' "101 0" "101 1" "101 3" "102 2" "77 0" >"$room/queue"
    submit -- "${quick[@]}"
    expect "the rest" "$output" "*8 cells: 0 measured, 4 under way, 4 to be submitted
*: 1 cell on new
*: 3 cells on old*"
    expect "its cells" "$(cat "$results"/submissions/2/*.cells | paste -s -d ' ')" \
        "new/trial/adler old/own/adler old/own/crc old/trial/crc"
    expect "behind all that is in the queue" "$(tail -n 1 "$room/jobs")" \
        "*--dependency=afterany:101:102:104:105 *"
    submit -- -dMethod=Auto
    expect "under way with other keys" "$status $output" \
        "1 *new/own/adler is under way, with the keys -dMethod=Manual *, not -dMethod=Auto *"
    rm "$room/queue"
    submit -- "${quick[@]}"
    expect "no squeue" "$status $output" "1 *squeue does not tell*nothing was submitted"
    exec {claim}>>"$results/lock"
    flock "$claim"
    submit -- "${quick[@]}"
    expect "two at a time" "$status $output" "1 *another submission to $results is under way*"
    exec {claim}<&-
}

test_what_is_measured_is_not_submitted() {
    start_anew
    submit -- "${quick[@]}"
    all_tasks 1
    rm "$results/cells/old/own/crc/ntkperf.csv"
    sed -i '$d' "$results/cells/new/own/crc/ntkperf.jsonl"
    rm -r "$results/cells/new/trial/adler"
    submit -- "${quick[@]}"
    expect "what is not whole" "$status $output" "0 == new/own/crc is damaged
== old/own/crc is damaged
== 8 cells: 5 measured, 0 under way, 3 to be submitted*"
    all_tasks 2
    submit -- "${quick[@]}"
    expect "all" "$status $output" "0 == 8 cells: 8 measured, *
== nothing is to be submitted; *merge.sh --results $results merges what is there"
}

# Of the cells of the test before.
test_what_was_measured_in_another_way_is_told() {
    submit -- "${quick[@]}" -c1
    expect "other keys" "$status $output" \
        "1 new/own/adler was measured with the keys -dMethod=*, not -dMethod=* -c1 *8 cells in *"
    printf x >>"$room/trial/lib/libntkdc.so.12"
    submit -- "${quick[@]}"
    expect "another build" "$status $output" "1 new/trial/adler was measured with another build of \
the library
*4 cells in $results cannot be taken for what is wanted*"
    printf x >>"$room/corpus/text"
    submit --replace -- "${quick[@]}"
    expect "all anew" "$status $output" "0 *8 to be submitted*"
    expect "what was there" "$(find "$results/replaced" -name ntkperf.jsonl | wc -l)" 10
}

# Slurm gives it to sh. The tasks here have no array and end at that.
test_a_name_may_have_any_characters() {
    start_anew
    results="$room/jürgen's \"new\" \$results"
    submit -- "${quick[@]}"
    expect "submission" "$status $output" "0 *merges them when all are done, into $results/merged"*
    sed -n 's/.*--wrap //p' "$room/jobs" | tail -n 2 | while IFS= read -r line; do
        sh -c "$line" 2>&1
    done >"$room/log"
    expect "the arguments of a task and of the merge" "$(<"$room/log")" \
        "*SLURM_ARRAY_TASK_ID: unbound variable*0 cells of 8 merged*"
}

test_a_dry_run_does_nothing
test_an_array_for_each_kind_and_a_merge_behind_them
test_what_is_under_way_is_not_submitted
test_what_is_measured_is_not_submitted
test_what_was_measured_in_another_way_is_told
test_a_name_may_have_any_characters
finish
