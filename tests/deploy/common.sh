# shellcheck shell=bash
# A room with a corpus, a build of the library and a Slurm that does nothing; sourced by the tests
# beside this file with their arguments: the folder of the scripts, and that of the programs.

set -uo pipefail

deploy=$1 programs=$2
room=$(mktemp -d)
trap 'rm -rf "$room"' EXIT
results=$room/results
failures=0
export SLURM_ROOM=$room
PATH=$(cd "$(dirname "${BASH_SOURCE[0]}")/slurm" && pwd):$PATH
unset CORPUS LD_LIBRARY_PATH NTK_DEEDS SLURM_RESTART_COUNT SLURMD_NODENAME

mkdir -p "$room/corpus" "$room/trial/lib"
printf 'some text, some text' >"$room/corpus/text"
library=$(ldd "$programs/ntkperf" | sed -n 's/.*libntkdc.so.12 => \([^ ]*\) .*/\1/p')
{ cat "$library" && printf trial; } >"$room/trial/lib/libntkdc.so.12"
: >"$room/queue"
# shellcheck disable=SC2034 # of the tests
quick=(-dMethod=Manual -dNumLoops=1 -dCodeLength=100)

# expect WHAT ACTUAL PATTERN: PATTERN is one of the shell, for the whole text.
expect() {
    # shellcheck disable=SC2053 # a pattern
    [[ $2 == $3 ]] && return
    printf -- '-- %s:\n%s\n-- is not as wanted:\n%s\n' "$1" "$2" "$3"
    failures=$((failures + 1))
}

# submit ARGUMENT...: two kinds, two builds, two groups. Sets output and status.
submit() {
    output=$("$deploy/submit.sh" --results "$results" --corpus "$room/corpus" \
        "--programs=$programs" --build own --build "trial=$room/trial" --kind old \
        --kind 'new=avx&big' --group adler=-fAdler --group "crc=-fCRC32 -f-BZ2" "$@" 2>&1)
    status=$?
}

merge() {
    output=$("$deploy/merge.sh" --results "$results" 2>&1)
    status=$?
}

# task SUBMISSION ARRAY NUMBER [RESTARTS]: as Slurm would run it. Sets output and status.
task() {
    output=$(SLURM_ARRAY_JOB_ID=$(<"$results/submissions/$1/$2.job") SLURM_ARRAY_TASK_ID=$3 \
        SLURM_RESTART_COUNT=${4:-0} SLURMD_NODENAME=n1 \
        "$deploy/measure.sh" "$results" "$results/submissions/$1/$2.cells" 2>&1)
    status=$?
}

# all_tasks SUBMISSION
all_tasks() {
    local list number
    for list in "$results/submissions/$1"/*.cells; do
        for ((number = 0; number < $(wc -l <"$list"); ++number)); do
            task "$1" "$(basename "$list" .cells)" "$number"
            expect "a task of submission $1" "$status $output" "0 *measured on n1, 0 tests failed"
        done
    done
}

start_anew() {
    rm -rf "$results" "$room/jobs" "$room/requeued"
    : >"$room/queue"
}

finish() {
    ((failures == 0)) || exit 1
    echo "all passed"
}
