#!/usr/bin/env bash
# Merges the cells of a result directory into RESULTS/merged: a page (report.html), a table
# (table.csv), both grouped by machine, and what became of each cell (cells.txt). submit.sh has it
# run when all tasks are done; it may be called at any time.
#
#   merge.sh --results DIR
#   merge.sh -h, --help       this text
#
# Status: 0 every planned cell is there, each measurement once, and no test failed; 1 something is
# missing or failed, which the output names: the rest is merged; 2 an argument is not known.

# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

[[ ${1:-} != --results=* ]] || set -- --results "${1#*=}" "${@:2}"
[[ $# == 2 && $1 == --results ]] || refuse "--results DIR is what it takes"
results=$(cd "$2" 2>/dev/null && pwd) || fail "there is no directory $2"
[[ -d $results/plan ]] || fail "nothing was submitted to $results"

# The task that was last in a cell, and why it did not get to its end.
last_try() {
    local try
    try=$(find "$results/tries/$1" -mindepth 1 -maxdepth 1 -printf '%T@ %P\n' 2>/dev/null |
        sort -n | tail -n 1 | cut -d ' ' -f 2)
    if [[ -n $try ]]; then
        printf '%s; see tries/%s/%s' "$(cat "$results/tries/$1/$try/why" 2>/dev/null ||
            echo "its last try ended with its node, or is not over")" "$1" "$try"
    else
        printf 'no task has begun it'
    fi
}

# what_became_of CELL: a line for people; "measured" alone when all is well.
what_became_of() {
    local state failed
    state=$(state "$results" "$1" "$results/plan/$1")
    case $state in
        measured)
            failed=$(told failed "$results/cells/$1/cell.txt")
            printf 'measured%s' "$( ((failed == 0)) || printf ', %s failed' "$(count "$failed" test)")"
            ;;
        missing)
            if [[ -s $results/failed/$1 ]]; then
                printf 'failed: %s' "$(<"$results/failed/$1")"
            else
                printf 'missing: %s' "$(last_try "$1")"
            fi
            ;;
        damaged) printf 'damaged: its files are not complete' ;;
        other*) printf 'left out: measured %s' "${state#other }" ;;
    esac
}

# Sets records to the files of all cells that are as planned, writes the state of all.
survey() {
    local cell became
    records=()
    while IFS= read -r cell; do
        became=$(what_became_of "$cell")
        printf '%s %s\n' "$cell" "$became"
        [[ $became != measured* ]] || records+=("$results/cells/$cell/ntkperf.jsonl")
    done < <(cells_in "$results/plan") >"$new/cells.txt"
}

# The report sets processors, builds and keys apart. Inside of that nothing was measured twice: so
# there are as many rows as measurements.
make_report() {
    local programs rows measurements
    programs=$(told programs "$results/plan/$(cells_in "$results/plan" | head -n 1)")
    "$programs/ntkreport" "--html=$new/report.html" "--csv=$new/table.csv" "${records[@]}" ||
        complain "ntkreport could not read or write all, see above"
    [[ -e $new/table.csv ]] || return 0
    measurements=$(cat "${records[@]}" | grep -c '^{"record":"measurement"' || true)
    rows=$(($(wc -l <"$new/table.csv") - 1))
    ((rows == measurements)) ||
        complain "$measurements measurements are $rows rows: some were measured twice"
}

complain() {
    say "$*"
    faults=$((faults + 1))
}

# Each file is replaced whole; there is no page without a single cell.
put_in_place() {
    local file
    for file in report.html table.csv cells.txt; do
        [[ ! -e $new/$file ]] || mv "$new/$file" "$results/merged/$file"
    done
}

faults=0
mkdir -p "$results/merged"
new=$(mktemp -d "$results/merged/.new.XXXXXX")
trap 'rm -rf "$new"' EXIT
survey
((${#records[@]} == 0)) || make_report
total=$(wc -l <"$new/cells.txt")
bad=$(grep -v ' measured$' "$new/cells.txt" || true)
put_in_place
say "$(count ${#records[@]} cell) of $total merged$( ((${#records[@]} == 0)) ||
    printf ': %s/merged/report.html, table.csv' "$results")"
if [[ -n $bad ]]; then
    printf '%s\n' "$bad"
    fail "$(count "$(wc -l <<<"$bad")" cell) of $total not as planned, see above;" \
        "submit.sh measures what is missing"
fi
((faults == 0)) || fail "something is wrong with the cells, see above"
