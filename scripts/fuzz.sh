#!/usr/bin/env bash
# Builds the fuzzers and runs each for a while, as many at a time as there are processors.
#
#   scripts/fuzz.sh [SECONDS [TARGET...]]
#
# SECONDS is what each target gets, 10 when not given; a target is a source in fuzz/decoders or
# fuzz/texts, such as lz4, all of them when none is named. A line tells how many inputs a target
# tried. Those that reached something new stay in build/fuzz/corpus/TARGET for the next run.
#
# A finding ends its target and makes the status 1. The input that made it, and what was said, stay
# in build/fuzz/findings/TARGET; how to replay it is printed, and where to put it so that the
# ordinary tests replay it from then on. fuzz/README.md tells more.
#
# Several may be started at a time: one builds after the other, and a target waits for its turn.

# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

fuzz_seconds=${1:-10}
[[ $fuzz_seconds =~ ^[1-9][0-9]{0,5}$ ]] ||
    refuse "'$fuzz_seconds' is not a number of seconds from 1 to 999999"
(($# == 0)) || shift

all=()
for source in "$top"/fuzz/{decoders,texts}/*.cpp; do
    all+=("$(basename "$source" .cpp)")
done
for name in "$@"; do
    [[ " ${all[*]} " == *" $name "* ]] || refuse "'$name' is no target; there are ${all[*]}"
done
targets=("${@:-${all[@]}}")

tree=$top/build/fuzz
need_writable "$top/build" "$tree"

# Most of the time goes into memory that is taken and given back; what is kept of it here is enough.
ASAN_OPTIONS=malloc_context_size=10:quarantine_size_mb=16${ASAN_OPTIONS:+:$ASAN_OPTIONS}
export ASAN_OPTIONS

# The largest input, the seconds for one input and the memory are small because the inputs are:
# what takes more is a finding, too.
fuzz() {
    local name=$1 corpus=$tree/corpus/$1 findings=$tree/findings/$1
    local program=$tree/bin/fuzz_$1 inputs=$top/fuzz/inputs/$1 log count status=0
    log=$findings/log
    rm -rf "$findings"
    mkdir -p "$findings"
    "$program" -max_total_time="$fuzz_seconds" -max_len=1024 -timeout=20 -rss_limit_mb=2048 \
        -print_final_stats=1 -artifact_prefix="$findings/" "$corpus" "$inputs" \
        >"$log" 2>&1 </dev/null || status=$?
    count=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
    if ((status == 0)); then
        printf '%-12s %9s inputs, nothing found\n' "$name" "${count:-no}"
        return
    fi
    local finding
    finding=$(find "$findings" -type f ! -name log | head -n 1)
    {
        printf '%-12s %9s inputs, then a FINDING:\n' "$name" "${count:-?}"
        grep -m 3 -E 'not so:|runtime error:|ERROR:|terminating' "$log" || tail -n 5 "$log"
        printf '  all that was said  %s\n' "$log"
        printf '  to replay it       %s %s\n' "$program" "${finding:-INPUT (none was written)}"
        printf '  to keep it         mv %s %s/NAME\n' "${finding:-INPUT}" "$inputs"
    } | sed "s|$top/||g"
    return 1
}
export -f fuzz alone say
export top tree fuzz_seconds

"$top/scripts/install.sh" --checks
build fuzz "${targets[@]/#/fuzz_}"
say "fuzzing each of ${#targets[@]} targets for $fuzz_seconds s"
# shellcheck disable=SC2016 # $1 and $tree are the inner shell's
printf '%s\0' "${targets[@]}" | xargs -0 -n 1 -P "$(nproc)" bash -c 'alone "$tree/corpus/$1" fuzz "$1"' fuzz ||
    fail "there are findings (see above); the paths are those in the project's top folder"
say "nothing found"
