#!/usr/bin/env bash
# What a task leaves, however it ends, and what is merged of it.
#
#   test_measure.sh SCRIPTS PROGRAMS

# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

why() {
    cat "$results/tries/$1/"*/why 2>/dev/null
}

test_cells_become_a_page_and_a_table() {
    submit -- "${quick[@]}"
    merge
    expect "before" "$status $output" "1 == 0 cells of 8 merged*
new/own/adler missing: no task has begun it
*merge.sh: 8 cells of 8 not as planned*"
    all_tasks 1
    merge
    expect "after" "$status $output" "0 == 8 cells of 8 merged: $results/merged/report.html, table.csv"
    expect "the table" "$(sed 1d "$results/merged/table.csv" | cut -d , -f 1,2 | sed 's/ on \([a-z]*\)[^,]*/ \1/')" \
        "own new,ntksAdler32_8u
own new,ntksCRC32C_8u
own new,ntksCRC32_8u
trial new,ntksAdler32_8u
trial new,ntksCRC32C_8u
trial new,ntksCRC32_8u
own old,*
trial old,ntksCRC32_8u"
    expect "a cell" "$(cd "$results/cells/old/trial/crc" && echo *)" \
        "cell.txt ntkperf.csv ntkperf.jsonl ntkperf.txt ntkperf_sum.csv"
    expect "its library" "$(grep -o '"path":"[^"]*libntkdc[^"]*"' "$results/cells/old/trial/crc/ntkperf.jsonl")" \
        "\"path\":\"$room/trial/lib/libntkdc.so.12\""
    task 1 old-01 0
    expect "a cell that is there" "$status $output" "0 *old/own/adler: is there already"
    cp -r "$results/cells/old/own/adler" "$room/other"
}

# What is not as planned is named and left out; the rest is merged.
test_what_is_wrong_with_a_cell_is_named() {
    sed -i '$d' "$results/cells/new/own/adler/ntkperf.jsonl"
    sed -i 's/-dNumLoops=1/-dNumLoops=2/' "$results/cells/new/own/crc/cell.txt"
    sed -i 's/^failed 0/failed 1/' "$results/cells/old/own/adler/cell.txt"
    rm -r "$results/cells/new/trial/crc"
    mkdir -p "$results/tries/new/trial/crc/101_3.1"
    merge
    expect "the merge" "$status $output" "1 == 5 cells of 8 merged*
new/own/adler damaged: its files are not complete
new/own/crc left out: measured with the keys *NumLoops=2*, not *NumLoops=1*
new/trial/crc missing: its last try ended with its node, or is not over; see tries/new/trial/crc/101_3.1
old/own/adler measured, 1 test failed
merge.sh: 4 cells of 8 not as planned*"
    expect "rows" "$(wc -l <"$results/merged/table.csv")" 8
    cat "$results/cells/old/own/crc/ntkperf.jsonl" "$results/cells/old/own/crc/ntkperf.jsonl" |
        sed 's/"started":"..../&x/; s/"clocks_per_unit":/&1/' >"$room/twice"
    cat "$room/twice" >>"$results/cells/old/own/crc/ntkperf.jsonl"
    merge
    expect "a case that is there twice" "$status $output" "1 *measurements are 7 rows: some were measured twice*"
}

test_a_task_that_fails_is_tried_again_and_then_given_up() {
    start_anew
    submit --tries 2 -- "${quick[@]}"
    PLAY=crash task 1 old-01 0
    expect "the first failure" "$status $output" "1 *out of memory*goes back into the queue, after failure 1 of 2"
    expect "the queue" "$(<"$room/requeued")" "102_0"
    expect "no cell" "$(ls "$results/cells" 2>&1)" "*No such*"
    PLAY=crash task 1 old-01 0 1
    expect "the second one" "$status $output" "1 *given up after 2 tries"
    expect "its reason" "$(<"$results/failed/old/own/adler")" \
        "ntkperf ended with status 1: out of memory; see tries/old/own/adler/102_0.2"
    merge
    expect "the merge" "$status $output" "1 *
old/own/adler failed: ntkperf ended with status 1: *"
    submit --tries 2 -- "${quick[@]}"
    expect "another submission" "$status $output" "0 *8 to be submitted*"
    expect "nothing is given up now" "$(ls "$results/failed/old/own")" ""
    REFUSE=requeue PLAY=crash task 2 old-01 0
    expect "what cannot be requeued" "$status $output" "1 *given up after 1 try"
    task 2 old-01 1
    expect "another task" "$status $output" "0 *measured on n1*"
}

test_what_changed_behind_the_submission_is_no_result() {
    start_anew
    submit -- "${quick[@]}"
    printf x >>"$room/trial/lib/libntkdc.so.12"
    task 1 old-01 3
    expect "the library" "$status $output" "1 *the library is not what it was when this was submitted*"
    mv "$room/trial/lib" "$room/away"
    task 1 old-01 2
    expect "no library" "$status $output" "1 *the library is not what it was*"
    mv "$room/away" "$room/trial/lib"
    printf x >>"$room/corpus/text"
    task 1 old-01 0
    expect "the corpus" "$status $output" "1 *the files of the corpus are not what they were*"
    expect "cells" "$(ls "$results/cells" 2>&1)" "*No such*"
}

await_file() {
    local tries
    for ((tries = 0; tries < 600; ++tries)); do
        [[ ! -s $1 ]] || return 0
        sleep 0.05
    done
    expect "within half a minute" "$1" "to be there"
}

test_a_preempted_task_has_not_failed() {
    local script
    start_anew
    submit --tries 1 -- "${quick[@]}"
    SLURM_ARRAY_JOB_ID=102 SLURM_ARRAY_TASK_ID=0 SLURMD_NODENAME=n1 PLAY=hang \
        "$deploy/measure.sh" "$results" "$results/submissions/1/old-01.cells" >"$room/log" 2>&1 &
    script=$!
    await_file "$room/begun"
    kill -TERM "$script"
    wait "$script"
    expect "the task" "$? $(<"$room/log")" "143 *old/own/adler: interrupted"
    expect "what is kept" "$(why old/own/adler)" "interrupted on n1: SIGTERM"
    ! kill -0 "$(<"$room/begun")" 2>/dev/null || expect "its step" "runs on" "to be ended"
    PLAY=crash task 1 old-01 0 1
    expect "a failure after it" "$output" "*given up after 1 try"
    task 1 old-01 0 2
    expect "a third try" "$status $output" "0 *measured on n1*"
    expect "what was given up" "$(ls "$results/failed/old/own")" ""
}

test_of_two_that_measured_the_same_one_stays() {
    start_anew
    rm "$room/corpus/text" && printf 'some text, some text' >"$room/corpus/text"
    submit -- "${quick[@]}"
    PLAY=race task 1 old-01 0
    expect "the slower one" "$status $output" "0 *another task was faster; what this one measured stays in *"
    expect "the cell" "$(diff -r "$room/other" "$results/cells/old/own/adler" && echo the other)" "the other"
}

test_cells_become_a_page_and_a_table
test_what_is_wrong_with_a_cell_is_named
test_a_task_that_fails_is_tried_again_and_then_given_up
test_what_changed_behind_the_submission_is_no_result
test_a_preempted_task_has_not_failed
test_of_two_that_measured_the_same_one_stays
finish
