# shellcheck shell=bash
# The results in out/: where they are while a run lasts, when they move, and what is read from them.
# Sourced by bench.sh, after common.sh.

# shellcheck disable=SC2154 # top is of common.sh
out=$top/out
running=$out/running
result_files=(ntkperf.txt ntkperf.csv ntkperf_sum.csv)

# Lets no other run write to out/ until this one, and the ntkperf that it started, are gone.
claim_results() {
    mkdir -p "$out"
    exec {claim}<"$out"
    flock --nonblock "$claim" ||
        fail "another run writes to $out, and two at a time disturb each other: wait for its end"
    [[ ! -d $running ]] || set_apart "killed"
}

# set_apart REASON: keeps what is in running/ as out/partial/, whose table, summary and log say what
# they are. The title stays five lines, so that the table loads as any other.
set_apart() {
    local partial=$out/partial
    if [[ ! -s $running/ntkperf.txt ]]; then
        rm -rf "$running" # nothing that could be worth an older partial/
        return
    fi
    rm -rf "$partial"
    mv "$running" "$partial"
    sed -i "s/^Start,.*/&  PARTIAL: the run was not finished ($1)/" "$partial/ntkperf.csv"
    sed -i "1s/\$/  PARTIAL: the run was not finished ($1)/" "$partial/ntkperf_sum.csv"
    printf '\nPARTIAL: the run was not finished (%s)\n' "$1" >>"$partial/ntkperf.txt"
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
        mv "$running/$file" "$out/$file"
    done
    rmdir "$running"
    trap - HUP INT TERM
}

# The tests of a summary that failed, "FUNCTION (RESULT)" on a line; none when there is no summary.
failed_tests() {
    [[ ! -s $1 ]] || LC_ALL=C awk -F, '
        FNR == 2 { for (i = 1; i <= NF; ++i) column[$i] = i; next }
        /^PS Summary/ { exit }
        FNR > 2 && $column["Result"] ~ /FAIL$|^UNDEFINED$/ {
            print $column["Function"] " (" $column["Result"] ")"
        }' "$1"
}

count_tests() {
    sed -n 's/^\.Number of tests *,//p' "$1"
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
