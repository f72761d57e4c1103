#!/usr/bin/env bash
# Tests the tests: makes one-line mutations of the sources in a copy of the project, one at a time
# and spread over the layers, runs the tests that the layer has, and tells which mutations lived.
#
#   scripts/mutate.sh N [SEED [LAYER...]]
#
# The same seed makes the same mutations of the same sources; without one it is 1. The layers are
# folders: ntk, perflib, perf, tools, common, compare, guard, report and bench, all of them unless
# some are named. A mutation that lives is a line that no test guards, unless it changes nothing
# that can be seen. The copy stays in build/mutate for the next time.
#
# The tests run in a process namespace: a program that ends others may, broken, mean all of them.

# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

[[ $# -ge 1 && $1 =~ ^[1-9][0-9]*$ && ${2:-1} =~ ^[0-9]+$ ]] ||
    refuse "usage: scripts/mutate.sh N [SEED [LAYER...]]"
wanted=$1
seed=${2:-1}
layers=(ntk perflib perf tools common compare guard report bench)
for layer in "${@:3}"; do
    [[ " ${layers[*]} " == *" $layer "* ]] || refuse "'$layer' is no layer; there are ${layers[*]}"
done
(($# <= 2)) || layers=("${@:3}")
copy=$top/build/mutate
log=$copy/build/mutate.log

apart=(unshare --pid --fork --kill-child --mount-proc)
((EUID == 0)) || apart+=(--map-current-user)
"${apart[@]}" true ||
    fail "the tests need a process namespace, which unshare does not get, see above"

# The folders of tests/ that test a layer, the quickest first.
folders_of() {
    case $1 in
        ntk) echo ntk perf system ;;
        perflib) echo perflib perf system ;;
        perf) echo perf system ;;
        tools) echo tools system ;;
        common) echo common report compare guard ;;
        *) echo "$1" ;;
    esac
}

# What has to compile with a mutation of a layer.
targets_of() {
    case $1 in
        ntk | perflib | perf | tools) echo ntkperf ntkcorpus ;;
        common) echo common/all report/all compare/all guard/all ;;
        *) echo "$1/all" ;;
    esac
}

# Makes the copy what the project is, leaving the times of files that have not changed.
copy_project() {
    local file
    mkdir -p "$copy"
    while IFS= read -r -d '' file; do
        [[ -f $top/$file ]] || continue # removed, but not yet committed
        cmp -s "$top/$file" "$copy/$file" && continue
        mkdir -p "$(dirname "$copy/$file")"
        cp "$top/$file" "$copy/$file"
    done < <(git -C "$top" ls-files -z --cached --others --exclude-standard)
    while IFS= read -r -d '' file; do
        [[ -f $top/$file ]] || rm "$copy/$file"
    done < <(cd "$copy" && find . -path ./build -prune -o -type f -printf '%P\0')
}

make_targets() {
    cmake --build "$copy/build" --parallel "$(nproc)" --target "$@" </dev/null >>"$log" 2>&1
}

# run_ctest FOLDER [ARGUMENT...]. The limits are also for what a test leaves running when its time
# is over, and for what fills the memory, which a browser seems to do.
run_ctest() {
    local folder=$1
    shift
    (
        ulimit -t 90 -v $((8 << 20))
        exec "${apart[@]}" ctest --test-dir "$copy/build/tests/$folder" \
            --exclude-regex '^Page\.Browser$' "$@" </dev/null >>"$log" 2>&1
    )
}

# Whether all tests of a folder pass. That they cannot even be listed is a failure too. A test fails
# only if it does so twice, the second time without others beside it: a busy machine is no finding.
passes() {
    local all=(--parallel "$(nproc)" --stop-on-failure)
    make_targets "tests/$1/all" || return 1
    run_ctest "$1" "${all[@]}" || { run_ctest "$1" --rerun-failed && run_ctest "$1" "${all[@]}"; }
}

# Before the first mutation of a layer.
declare -A checked
check_tests_of() {
    local folder
    for folder in $(folders_of "$1"); do
        [[ -z ${checked[$folder]:-} ]] || continue
        say "tests/$folder without a mutation"
        passes "$folder" || fail "tests/$folder fails without a mutation, see $log"
        checked[$folder]=yes
    done
}

# Whether one of the tests of the layer sees the mutation.
is_seen() {
    local folder
    for folder in $(folders_of "$1"); do
        passes "$folder" || return 0
    done
    return 1
}

# mutate FILE LINE: puts $text there and counts the mutation, unless it does not compile.
mutate() {
    local file=$1 line=$2 old targets
    check_tests_of "${file%%/*}"
    read -ra targets < <(targets_of "${file%%/*}")
    old=$(sed -n "${line}p" "$copy/$file")
    cp "$copy/$file" "$copy/build/saved"
    awk -v n="$line" 'NR != n { print } NR == n { print ENVIRON["text"] }' "$copy/build/saved" \
        >"$copy/$file"
    printf '%s:%s: %s\n' "$file" "$line" "$text" >>"$log"
    if make_targets "${targets[@]}"; then
        if is_seen "${file%%/*}"; then
            seen=$((seen + 1))
        else
            lived=$((lived + 1))
            printf 'lived: %s:%s\n-%s\n+%s\n' "$file" "$line" "$old" "$text"
        fi
    fi
    cp "$copy/build/saved" "$copy/$file"
}

copy_project
mkdir -p "$copy/build"
: >"$log"
cmake -S "$copy" -B "$copy/build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DNTK_TEST_SECONDS=60 \
    </dev/null >>"$log" || fail "the copy of the project cannot be configured, see $log"
say "$wanted mutations with seed $seed; the log is $log"
seen=0
lived=0
export text # for awk, which would take backslashes of an argument for its own
mapfile -t sources < <(cd "$copy" && find "${layers[@]/%perflib/perflib/src}" \
    -name '*.cpp' -o -name '*.h' | LC_ALL=C sort)
while ((seen + lived < wanted)) && IFS=$'\t' read -r file line text; do
    mutate "$file" "$line"
done < <(cd "$copy" && exec perl "$top/scripts/mutations.pl" "$seed" "${sources[@]}")
say "$wanted mutations: $seen seen by a test, $lived lived"
