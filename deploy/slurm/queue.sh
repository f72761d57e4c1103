# shellcheck shell=bash
# What Slurm is asked and told; sourced by submit.sh, after common.sh.
#
# A submission has a directory: submissions/N/ARRAY.cells are the cells of an array, a line for each
# task from 0 on, ARRAY.job the number that Slurm gave it, ARRAY.TASK.txt what a task said.

# shellcheck disable=SC2154 # the variables of submit.sh

# cells_in_queue RESULTS: those that an earlier submission has waiting or running.
cells_in_queue() {
    local job number task
    local -A lists=()
    for job in "$1"/submissions/*/*.job; do
        [[ -s $job ]] && lists[$(<"$job")]=${job%.job}.cells
    done
    ((${#lists[@]} > 0)) || return 0
    while read -r number task; do
        if [[ -n ${lists[$number]:-} ]]; then
            sed -n "$((task + 1))p" "${lists[$number]}"
        fi
    done <"$scratch/queue"
}

# All of it: the variables that some users have set would leave jobs out.
ask_queue() {
    unset "${!SQUEUE_@}"
    squeue --noheader --array --format='%F %K' >"$scratch/queue" ||
        fail "squeue does not tell what is under way; nothing was submitted"
}

# The numbers of the arrays of this result directory that are still in the queue.
arrays_in_queue() {
    cat "$results"/submissions/*/*.job 2>/dev/null | grep -v '\.' | sort |
        join - <(cut -d ' ' -f 1 "$scratch/queue" | sort -u) || true
}

# Tasks of an array that Slurm takes: their numbers end below MaxArraySize.
largest_array() {
    local size
    size=$(scontrol show config | sed -n 's/^MaxArraySize *= *//p')
    printf '%d' "${size:-1001}"
}

# constraint_of KIND: as the command line has it.
constraint_of() {
    local kind
    for kind in "${kinds[@]}"; do
        [[ ${kind%%=*} != "$1" ]] || printf '%s' "${kind#*=}"
    done
}

# Writes the lists of the arrays into a directory: KIND-01.cells, and more of them where an array
# cannot have so many tasks.
make_lists() {
    local kind
    for kind in "${kinds[@]%%=*}"; do
        printf '%s\n' "${missing[@]}" | awk -F / -v kind="$kind" '$1 == kind' >"$scratch/cells"
        [[ ! -s $scratch/cells ]] || split --lines="$(largest_array)" --numeric-suffixes=1 --additional-suffix=.cells \
            "$scratch/cells" "$1/$kind-"
    done
}

# script_of COMMAND...: as a line for sh, which does not know all that bash writes as %q.
script_of() {
    local word
    printf 'exec'
    for word in "$@"; do
        printf " '%s'" "${word//\'/\'\\\'\'}"
    done
}

# array_command LIST: sets command. Each task has a node of its own, uses a thread of each core, and
# goes back into the queue with the log that it has.
array_command() {
    local kind
    kind=$(head -n 1 "$1" | cut -d / -f 1)
    command=(sbatch --parsable "--job-name=ntkperf-$kind" "--array=0-$(($(wc -l <"$1") - 1))"
        "--constraint=$(constraint_of "$kind")" --nodes=1 --ntasks=1 --exclusive
        --hint=nomultithread --requeue --open-mode=append "--chdir=$results"
        "--output=${1%.cells}.%a.txt" "${sbatch[@]}"
        --wrap "$(script_of "$here/measure.sh" "$results" "$1")")
}

show_jobs() {
    local list
    mkdir "$scratch/lists"
    make_lists "$scratch/lists"
    for list in "$scratch"/lists/*.cells; do
        [[ -e $list ]] || continue
        array_command "$list"
        printf '%q ' "${command[@]//$scratch\/lists/$results/submissions/NEXT}"
        printf '\n'
    done
}

# Sets submission to a new directory.
new_submission() {
    local number=1
    mkdir -p "$results/submissions"
    until mkdir "$results/submissions/$number" 2>/dev/null; do
        number=$((number + 1))
    done
    submission=$results/submissions/$number
}

submit_cells() {
    local list submission command job jobs=()
    readarray -t jobs < <(arrays_in_queue)
    new_submission
    make_lists "$submission"
    for list in "$submission"/*.cells; do
        array_command "$list"
        job=$("${command[@]}") || fail "sbatch took no array for $list, see above." \
            "What it took before runs; call this again when the cause is mended." \
            "What is not wanted after all has to be removed from $results/plan"
        job=${job%%;*} # the name of the cluster behind it
        printf '%s\n' "$job" >"${list%.cells}.job"
        jobs+=("$job")
        say "job $job: $(count "$(wc -l <"$list")" cell) on $(head -n 1 "$list" | cut -d / -f 1)"
    done
    submit_merge "$(printf '%s\n' "${jobs[@]}" | grep . | sort -u | paste -s -d :)"
}

# submit_merge JOBS: behind all that is under way, however it ends.
submit_merge() {
    local job
    job=$(sbatch --parsable --job-name=ntkperf-merge "--dependency=afterany:$1" --nodes=1 \
        --ntasks=1 "--chdir=$results" "--output=$submission/merge.txt" "${sbatch[@]}" \
        --wrap "$(script_of "$here/merge.sh" --results "$results")") ||
        fail "sbatch took the arrays, but not the job that merges: call" \
            "$here/merge.sh --results $results when they are done"
    say "job ${job%%;*}: merges them when all are done, into $results/merged"
    say "what the jobs say: $submission"
}
