#!/usr/bin/env bash
# From arguments to cells and arrays.
#
#   test_plan.sh SCRIPTS PROGRAMS

# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

test_arrays_that_slurm_does_not_take_are_parted() {
    start_anew
    ARRAY=3 submit -- "${quick[@]}"
    expect "parts" "$output" "*job 101: 3 cells on new
*: 1 cell on new
*: 3 cells on old
*job 104: 1 cell on old
*"
    start_anew
    REFUSE=--constraint=old submit -- "${quick[@]}"
    expect "one that is refused" "$status $output" "1 *== job 101: 4 cells on new*sbatch took no*"
    echo "101 0
101 1
101 2
101 3" >"$room/queue"
    submit -- "${quick[@]}"
    expect "the other one" "$output" "*4 under way, 4 to be submitted*"
}

test_groups() {
    start_anew
    submit --group all=-fCRC -- "${quick[@]}"
    expect "overlapping" "$status $output" "1 *several groups measure ntksCRC32C_8u ntksCRC32_8u:*"
    submit --group "long=-fAdler -dCodeLength=200" --dry-run
    expect "the same functions with other keys" "$status" 0
    submit --group p_none
    expect "no source" "$status $output" "1 *no source p_none, only p_dc*p_dclz4 *"
    submit --group none=-fNone
    expect "no function" "$status $output" "1 *no function belongs to the group none (-fNone)"
    submit -- -f+LZ4
    expect "none with the keys of all cells" "$status $output" "1 *to the group adler (-fAdler, with -f+LZ4)"
    submit -- -fLZ4
    expect "all with the same functions" "$status $output" "1 *several groups measure *LZ4*"
    output=$("$deploy/submit.sh" --results "$results" --corpus "$room/corpus" --build own --kind old \
        "--programs=$programs" --dry-run 2>&1)
    expect "all sources" "$output" "== 8 cells: *
old/own/p_dcchecksum_ia
*old/own/p_dczfp
*"
}

test_wrong_arguments() {
    local case
    while IFS='|' read -r -a case; do
        # shellcheck disable=SC2086 # words
        output=$("$deploy/submit.sh" ${case[0]} 2>&1)
        expect "${case[0]}" "$? $output" "${case[1]}"
    done <<END
--corpus .|2 *--results is missing*
--results r --corpus . --kind k|2 *--build is missing*
--results r --corpus . --build own|2 *--kind is missing*
--results r --corpus . --build own --kind a/b|2 *'a/b' cannot be a name*
--results r --corpus . --build own --kind k --nonsense|2 *'--nonsense' is not known*
--results r --corpus . --build own --kind k --tries 0|2 *--tries takes a number*
--results r --corpus . --build own --kind k --tries|2 *--tries needs a value*
--results r --corpus . --build own --kind k -- book1|2 *'book1' is not known: ntkperf's keys*
--results r --corpus . --build own --kind k -- -xfile|2 *-xfile names outputs*
--results r --corpus . --build own --kind k=|2 *a constraint is missing*
--results r --help|0 Measures builds*
--results r --corpus $room/none --build own --kind k|1 *there is no corpus $room/none
--results r --corpus $room/trial --build own --kind k|1 *there are no files in the corpus $room/trial
--results $results --corpus . --programs . --build own --kind k|1 *are not in .: build them*
--results $results --corpus . --programs $programs --build own --kind k --group g=|2 *keys are missing*
--results $results --corpus . --programs $programs --build own --kind k --group g=-xfile|2 *-xfile names outputs*
--results $results --corpus . --programs $programs --build own --kind k --group g='|2 *--group g=' cannot be told apart*
--results $results%a --corpus . --programs $programs --build own --kind k --dry-run|1 *takes no %*
--results $results --corpus . --programs $programs --build old --kind k|2 *--build old=DIR*
--results $results --corpus . --programs $programs --build a=$room/corpus --kind k|1 *no library in*
END
    for case in submit merge measure pinned; do
        expect "$case.sh --help" "$("$deploy/$case.sh" --help)" "[A-Z]*  $case.sh *[!}]"
    done
}

test_arrays_that_slurm_does_not_take_are_parted
test_groups
test_wrong_arguments
finish
