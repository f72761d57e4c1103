#!/usr/bin/env bash
# Measures one cell on the node that Slurm gave: what a task of submit.sh runs. Not for users.
#
#   measure.sh RESULTS LIST    the cell is the line of LIST with the number of this task
#
# A cell appears in RESULTS/cells all at once when it is complete. What a try leaves that does not
# get there stays in RESULTS/tries, and the task goes back into the queue, until it has been tried
# as often as the plan says.

# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

(($# == 2)) || refuse "two arguments are needed, RESULTS and LIST"
results=$1
cell=$(sed -n "$((SLURM_ARRAY_TASK_ID + 1))p" "$2")
task=${SLURM_ARRAY_JOB_ID}_$SLURM_ARRAY_TASK_ID
plan=$results/plan/$cell
tries=$results/tries/$cell
try=$tries/$task.$((${SLURM_RESTART_COUNT:-0} + 1))
node=${SLURMD_NODENAME:-$(hostname -s)}
keys=() child=

log() {
    printf '%s %s: %s\n' "$(date +%T)" "$cell" "$*"
}

# failures: of this task, up to now. What was preempted or lost with its node is none.
failures() {
    local count=0 why
    for why in "$tries/$task".*/why; do
        if grep -qs '^failed' "$why"; then
            count=$((count + 1))
        fi
    done
    printf '%d' "$count"
}

# complain TEXT: the try ends here. Before the last one the task goes back into the queue, where
# another node may take it.
complain() {
    trap '' TERM
    log "$*"
    printf 'failed on %s: %s\n' "$node" "$*" >"$try/why"
    local most
    most=$(told tries "$plan")
    if (($(failures) < most)) && scontrol requeue "$task"; then
        log "goes back into the queue, after failure $(failures) of $most"
    else
        give_up "$*"
    fi
    exit 1
}

# As a complete file: the job that merges may read it at any time.
give_up() {
    mkdir -p "$results/failed/${cell%/*}"
    printf '%s; see %s\n' "$*" "tries/$cell/$(basename "$try")" >"$try/failed"
    mv "$try/failed" "$results/failed/$cell"
    log "given up after $(count "$(failures)" try | sed 's/trys$/tries/')"
}

# Preempted, cancelled or out of time: Slurm knows what comes next.
interrupted() {
    trap '' TERM INT
    printf 'interrupted on %s: SIGTERM\n' "$node" >"$try/why"
    log "interrupted"
    child=${child:-${!:-}} # the step may have begun this very moment
    [[ ${child:-over} == over ]] || { kill "$child" && wait "$child"; } 2>/dev/null || true
    exit 143
}

# The step has one task on one core. What it may run on is kept beside the results. The libraries get
# there by the environment, whatever the user told sbatch about that.
run() {
    local status=0 seconds
    seconds=$(told limit "$plan")
    readarray -t keys < <(told key "$plan")
    cd "$(told input "$plan")" || complain "the corpus is not on this node"
    (
        use_libraries "$(told libraries "$plan")"
        exec srun --export=ALL --ntasks=1 --cpus-per-task=1 --cpu-bind=cores \
            "$here/pinned.sh" "$try/processors" "$programs/ntkguard" --limit "$seconds" \
            "$programs/ntkperf" -B "${keys[@]}" "-o$try/ntkperf.txt" "-r$try/ntkperf.csv" \
            "-u$try/ntkperf_sum.csv" "-x$try/ntkperf.jsonl" >"$try/console" 2>&1
    ) </dev/null &
    child=$!
    wait "$child" || status=$?
    child=over
    cd "$results"
    ((status == 0)) || complain "ntkperf ended with status $status: $(last_words)"
}

last_words() {
    grep -v '^ *$' "$try/console" | tail -n 1 | cut -c 1-200
}

# Before: nobody needs figures of other files. After: what the loader took is only known then.
check_inputs() {
    [[ $(sum_of "$programs/ntkperf") == "$(told program "$plan")" ]] ||
        complain "$programs/ntkperf is not what it was when this was submitted"
    [[ $(corpus_identity "$(told input "$plan")") == "$(told corpus "$plan")" ]] ||
        complain "the files of the corpus are not what they were when this was submitted"
}

check_outputs() {
    is_whole "$try" || complain "ntkperf ended without writing all that it should: $(last_words)"
    [[ $(library_identity "$try/ntkperf.jsonl") == "$(grep '^library ' "$plan")" ]] ||
        complain "the library is not what it was when this was submitted, or not on this node"
}

# The records tell of which cell they are; ntkreport sorts by it.
describe() {
    local kind build group
    IFS=/ read -r kind build group <<<"$cell"
    {
        printf '{"record":"cell","kind":"%s","build":"%s","group":"%s","node":"%s","task":"%s"}\n' \
            "$kind" "$build" "$group" "$node" "$task"
        cat "$try/ntkperf.jsonl"
    } >"$try/records"
    mv "$try/records" "$try/ntkperf.jsonl"
    {
        identity "$plan"
        printf '%s\n' "node $node" "task $task" "processors $(<"$try/processors")" \
            "failed $(failed_tests "$try/ntkperf.jsonl")"
    } >"$try/cell.txt"
    rm -f "$try/console" "$try/processors"
}

# A directory takes no other's place: of two tasks that measured the same, one that Slurm had taken
# for dead, the first one stays.
put_in_place() {
    mkdir -p "$results/cells/${cell%/*}"
    if mv --no-target-directory "$try" "$results/cells/$cell" 2>/dev/null; then
        rm -f "$results/failed/$cell"
        log "measured on $node, $(told failed "$results/cells/$cell/cell.txt") tests failed"
    elif [[ $(state "$results" "$cell" "$plan") == measured ]]; then
        log "another task was faster; what this one measured stays in $try"
    else
        complain "the cell could not be put into place"
    fi
}

if [[ $(state "$results" "$cell" "$plan") == measured ]]; then
    log "is there already"
    exit 0
fi
mkdir -p "$tries"
mkdir "$try"
trap interrupted TERM INT
# The frequency of the clock counter, which ntkperf keeps; a home may be that of all nodes.
export XDG_CACHE_HOME=$results/nodes/$node
programs=$(told programs "$plan")
log "try on $node"
check_inputs
run
check_outputs
describe
put_in_place
