# shellcheck shell=bash
# The results in out/: where they are while a run lasts, when they move, and what is read from them.
# Sourced by bench.sh, after common.sh.

# shellcheck disable=SC2154 # top is of common.sh, ntkreport of bench.sh
out=$top/out
running=$out/running
result_files=(ntkperf.txt ntkperf.csv ntkperf_sum.csv ntkperf.jsonl report.html)

# Lets no other run write to out/ until this one, and the ntkperf that it started, are gone.
claim_results() {
    mkdir -p "$out"
    exec {claim}<"$out"
    flock --nonblock "$claim" ||
        fail "another run writes to $out, and two at a time disturb each other: wait for its end"
    [[ ! -d $running ]] || set_apart "killed"
}

# Adds the records of a pass to those of the passes before it.
join_records() {
    if [[ -e $running/pass.jsonl ]]; then
        cat "$running/pass.jsonl" >>"$running/ntkperf.jsonl"
        rm "$running/pass.jsonl"
    fi
}

# make_report DIRECTORY: a page of its records. What ntkreport says goes to standard error; it gives
# a status of 1 also where something could not be read and the rest is in the page.
make_report() {
    "$ntkreport" "--html=$1/report.html" "$1/ntkperf.jsonl" >&2 || [[ -s $1/report.html ]]
}

# mark FILE PATTERN TEXT: adds the text to the last line that the pattern fits: of several passes
# the last one was not finished.
mark() {
    local line
    line=$(grep -n "$2" "$1" | tail -n 1 | cut -d : -f 1)
    [[ -z $line ]] || sed -i "${line}s/\$/$3/" "$1"
}

# set_apart REASON: keeps what is in running/ as out/partial/, whose table, summary and log say what
# they are. The title stays five lines, so that the table loads as any other. Records end without
# the line that tells the end.
set_apart() {
    local partial=$out/partial text="  PARTIAL: the run was not finished ($1)"
    if [[ ! -s $running/ntkperf.txt ]]; then
        rm -rf "$running" # nothing that could be worth an older partial/
        return
    fi
    join_records
    rm -rf "$partial" "$running/console"
    mv "$running" "$partial"
    mark "$partial/ntkperf.csv" '^Start,' "$text"
    mark "$partial/ntkperf_sum.csv" '^ *Processor' "$text"
    printf '\n%s\n' "${text#  }" >>"$partial/ntkperf.txt"
    if grep -qs '"record":"measurement"' "$partial/ntkperf.jsonl" && [[ -x $ntkreport ]]; then
        make_report "$partial" || true
    fi
    say "what the unfinished run ($1) had written, marked PARTIAL: $partial"
}

# Puts the complete results into out/. Those there become out/previous/, unless tests failed: then
# out/previous/ is better.
put_in_place() {
    local file
    trap '' HUP INT TERM
    if [[ -s $out/ntkperf.csv && -z $(failed_tests "$out/ntkperf_sum.csv") ]]; then
        mkdir -p "$out/previous"
        for file in "${result_files[@]}"; do
            rm -f "$out/previous/$file"
            [[ ! -e $out/$file ]] || mv "$out/$file" "$out/previous/$file"
        done
    fi
    for file in "${result_files[@]}"; do
        rm -f "$out/$file" # there may be no page in its place
        [[ ! -e $running/$file ]] || mv "$running/$file" "$out/$file"
    done
    rm -f "$running/console"
    rmdir "$running"
    trap - HUP INT TERM
}

# The tests of a summary that failed in any pass, "FUNCTION (RESULT)" on a line; none when there is
# no summary.
failed_tests() {
    [[ ! -s $1 ]] || LC_ALL=C awk -F, '
        /^Function,/ { for (i = 1; i <= NF; ++i) column[$i] = i; inside = 1; next }
        /^PS Summary/ { inside = 0 }
        inside && $column["Result"] ~ /FAIL$|^UNDEFINED$/ && !seen[$column["Function"]]++ {
            print $column["Function"] " (" $column["Result"] ")"
        }' "$1"
}

# Of one pass.
count_tests() {
    sed -n 's/^\.Number of tests *,//p' "$1" | tail -n 1
}

# The MHz that the first line of a table names; nothing when it names none.
title_mhz() {
    LC_ALL=C awk -F '  +' '
        /^Processor,/ {
            for (i = 2; i <= NF; ++i)
                if ($i ~ /^[0-9.]+ [MG]Hz$/)
                    print $i * ($i ~ /GHz/ ? 1000 : 1)
        }
        { exit }' "$1"
}
