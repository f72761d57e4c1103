#!/usr/bin/env bash
# Measures builds of the library on the machines of a Slurm cluster: a cell for each build, group of
# functions and kind of machine. Submits what is missing in the result directory, a job array for
# each kind, and behind them a job that merges all cells into one page and one table. Called again,
# it goes on where the cluster got stuck: what is measured or under way is not submitted again.
#
#   submit.sh --results DIR --corpus DIR --build NAME=DIR... --kind NAME... [OPTION...] [-- KEY...]
#
#   --results DIR             for all that is measured; made if need be
#   --corpus DIR              the input files, $CORPUS unless told otherwise
#   --build NAME=DIR          the libraries of this build are in DIR, or in DIR/lib; NAME is for the
#                             report. DIR may be own: those that ntkperf was built with
#   --kind NAME[=CONSTRAINT]  a kind of machine: the feature of its nodes, or what --constraint of
#                             sbatch takes
#   --group NAME[=KEYS]       functions that one task measures, chosen by keys of ntkperf; without
#                             KEYS the source NAME of "ntkperf -e". Without --group all sources
#   --programs DIR            ntkperf and its companions; those of this installation or build
#   --sbatch OPTION           for all jobs: --sbatch=--account=perf --sbatch=--time=1:00:00
#   --limit SECONDS           that a combination may take, 300 unless told otherwise
#   --tries N                 a task is tried N times before it is given up, 3 unless told otherwise
#   --replace                 measures anew what was measured with other keys, files or builds
#   --dry-run                 tells what is there and what would be submitted, and does nothing
#   -h, --help                this text
#
# --build, --kind, --group and --sbatch may be given several times. KEYs are for ntkperf in all
# cells: -- -dMethod=Manual "-dCodeLength=16384;65536". All directories have to be the same on all
# nodes.
#
# Status: 0 all is measured, under way or submitted; 1 it is not, the last line says why; 2 an
# argument is not known.

# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"
# shellcheck source-path=SCRIPTDIR source=plan.sh
. "$here/plan.sh"
# shellcheck source-path=SCRIPTDIR source=queue.sh
. "$here/queue.sh"

results='' corpus=${CORPUS:-} programs='' limit=300 tries=3 dry=false replace=false
builds=() kinds=() groups=() sbatch=() keys=()

# value OPTION COUNT: refuses an option that nothing follows.
value() {
    (($2 > 1)) || refuse "$1 needs a value"
}

parse_arguments() {
    while (($# > 0)); do
        if [[ $1 == --?*=* ]]; then
            set -- "${1%%=*}" "${1#*=}" "${@:2}"
            [[ $1 != --dry-run && $1 != --replace ]] || refuse "$1 takes no value"
        fi
        case $1 in
            --)
                keys=("${@:2}")
                return
                ;;
            -h | --help) show_help ;;
            --dry-run) dry=true && shift && continue ;;
            --replace) replace=true && shift && continue ;;
            --results | --corpus | --programs | --limit | --tries | --build | --kind | --group | \
                --sbatch) value "$1" $# ;;
            *) refuse "'$1' is not known" ;;
        esac
        case $1 in
            --results) results=$2 ;;
            --corpus) corpus=$2 ;;
            --programs) programs=$2 ;;
            --limit) limit=$2 ;;
            --tries) tries=$2 ;;
            --build) builds+=("$2") ;;
            --kind) kinds+=("$2") ;;
            --group) groups+=("$2") ;;
            --sbatch) sbatch+=("$2") ;;
        esac
        shift 2
    done
}

check_arguments() {
    [[ -n $results ]] || refuse "--results is missing"
    [[ -n $corpus ]] || refuse "--corpus is missing, and CORPUS is not set"
    ((${#builds[@]} > 0)) || refuse "--build is missing"
    ((${#kinds[@]} > 0)) || refuse "--kind is missing"
    [[ $limit =~ ^[1-9][0-9]*$ ]] || refuse "--limit takes seconds, not '$limit'"
    [[ $tries =~ ^[1-9][0-9]?$ ]] || refuse "--tries takes a number from 1 to 99, not '$tries'"
    local item
    for item in "${builds[@]}" "${kinds[@]}" "${groups[@]}"; do
        is_name "${item%%=*}" ||
            refuse "'${item%%=*}' cannot be a name: letters, digits and _ . + - only"
    done
    for item in "${kinds[@]}"; do
        [[ $item != *= ]] || refuse "--kind $item: a constraint is missing behind the ="
    done
    for item in "${keys[@]}"; do
        check_key "$item"
    done
}

# check_key KEY: of all cells or of a group.
check_key() {
    [[ $1 == -* ]] || refuse "'$1' is not known: ntkperf's keys begin with -"
    [[ $1 != -[oOrRuUxglnpeIhv?]* ]] ||
        refuse "the key $1 names outputs or measures nothing: each cell has its own outputs"
    [[ $1 != *$'\n'* ]] || refuse "a key has two lines"
}

find_directories() {
    [[ -d $corpus ]] || fail "there is no corpus $corpus"
    corpus=$(cd "$corpus" && pwd)
    [[ -n $(find "$corpus" -maxdepth 1 \( -type f -o -type l \) -print -quit) ]] ||
        fail "there are no files in the corpus $corpus"
    find_programs
    if $dry; then
        results=$(realpath -m "$results")
    else
        mkdir -p "$results" || fail "the results cannot be written to $results"
        results=$(cd "$results" && pwd)
    fi
    # Slurm would replace what begins with % in the names of the outputs.
    [[ $results != *[%\\]* ]] || fail "$results: Slurm takes no % or \\ in this name, choose other --results"
}

# The folder with ntkperf and its companions: of an installation, which has this folder in
# share/ntkperf, or of a build.
find_programs() {
    local folder
    for folder in "${programs:-$here/../../../bin}" "${programs:-$here/../../build/release/bin}"; do
        if [[ -x $folder/ntkperf && -x $folder/ntkguard && -x $folder/ntkreport ]]; then
            programs=$(cd "$folder" && pwd)
            return
        fi
    done
    fail "ntkperf, ntkguard and ntkreport are not in ${programs:-the build}: build them, or name" \
        "their folder with --programs"
}

# Two submissions at the same time would not see each other's jobs. NFS lets only a file that is
# open for writing be claimed for all of its clients.
claim_results() {
    local status=0
    ! $dry || return 0
    exec {claim}>>"$results/lock"
    flock --nonblock "$claim" || status=$?
    ((status != 1)) ||
        fail "another submission to $results is under way: wait for its end, and try again"
    ((status == 0)) ||
        fail "$results/lock cannot be locked, see above: choose a file system with locks (flock)"
}

# Sets measured, under_way and missing; ends the script when cells were measured in another way.
survey() {
    local cell state others=0
    missing=() under_way=() measured=()
    local -A queued
    while IFS= read -r cell; do
        queued[$cell]=1
    done < <(cells_in_queue "$results")
    for cell in "${planned[@]}"; do
        state=$(state "$results" "$cell" "$scratch/plan/$cell")
        if [[ $state == measured ]]; then
            measured+=("$cell")
        elif [[ -n ${queued[$cell]:-} ]]; then
            under_way+=("$cell")
            must_be_planned_alike "$cell"
        elif [[ $state == other* ]] && ! $replace; then
            printf '%s was measured %s\n' "$cell" "${state#other }"
            others=$((others + 1))
        else
            missing+=("$cell")
            [[ $state != damaged ]] || say "$cell is damaged"
        fi
    done
    ((others == 0)) || fail "$(count $others cell) in $results cannot be taken for what is wanted;" \
        "--replace measures them anew, another --results keeps both"
}

# A task reads its plan when it starts.
must_be_planned_alike() {
    [[ $(identity "$results/plan/$1") == "$(identity "$scratch/plan/$1")" ]] ||
        fail "$1 is under way, $(differences "$results/plan/$1" "$scratch/plan/$1"):" \
            "wait for its end, or cancel it (scancel)"
}

show_survey() {
    local cell
    say "$(count ${#planned[@]} cell): ${#measured[@]} measured, ${#under_way[@]} under way," \
        "${#missing[@]} to be submitted"
    if $dry; then
        for cell in "${missing[@]}"; do
            printf '%s\n' "$cell"
        done
        show_jobs
    fi
}

# The plan of all cells, also of those that are there: the job that merges knows by it what to
# expect. It may run just now, so a plan appears whole. What is to be measured anew moves out of the
# way.
write_plan() {
    local cell
    for cell in "${planned[@]}"; do
        ! cmp --silent "$scratch/plan/$cell" "$results/plan/$cell" || continue
        mkdir -p "$results/plan/${cell%/*}"
        cp "$scratch/plan/$cell" "$results/new-plan"
        mv "$results/new-plan" "$results/plan/$cell"
    done
    for cell in "${missing[@]}"; do
        rm -f "$results/failed/$cell"
        if [[ -e $results/cells/$cell ]]; then
            mkdir -p "$results/replaced/$cell"
            mv "$results/cells/$cell" "$results/replaced/$cell/$(date +%F.%H-%M-%S.%N)"
        fi
    done
}

parse_arguments "$@"
check_arguments
find_directories
claim_results
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
make_plan
ask_queue
survey
show_survey
if $dry; then
    exit 0
fi
write_plan
if ((${#missing[@]} == 0)); then
    say "nothing is to be submitted; $here/merge.sh --results $results merges what is there"
    exit 0
fi
submit_cells
