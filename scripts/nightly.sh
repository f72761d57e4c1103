#!/usr/bin/env bash
# What takes more time than .ci/run has: every fuzzer for minutes, lines broken one by one to see
# whether the tests notice, and whether the harness reads costs that are known. With what is set
# here some three hours on two processors.
#
#   scripts/nightly.sh                        300 seconds for each fuzzer, 30 broken lines
#   scripts/nightly.sh SECONDS [MUTATIONS]    as many as these
#
# A step that fails lets the next ones run; the last line names it and the status is 1. The broken
# lines are others each day; one that no test noticed is printed and is for a person to judge.

# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

fuzz_seconds=${1:-300}
mutations=${2:-30}
[[ $# -le 2 && $fuzz_seconds =~ ^[1-9][0-9]*$ && $mutations =~ ^[1-9][0-9]*$ ]] ||
    refuse "usage: scripts/nightly.sh [SECONDS [MUTATIONS]]"
need_writable "$top/build"
failed=()

# step NAME COMMAND...
step() {
    say "$1"
    "${@:2}" || failed+=("$1")
}

read_known_costs() {
    build release bench_known_cost && "$top/build/release/bin/bench_known_cost"
}

"$top/scripts/install.sh" --checks
step "fuzzers" "$top/scripts/fuzz.sh" "$fuzz_seconds"
step "broken lines" "$top/scripts/mutate.sh" "$mutations" "$(date +%Y%m%d)"
step "known costs" read_known_costs
((${#failed[@]} == 0)) || fail "these steps failed, see above: $(printf '%s; ' "${failed[@]}")"
say "all steps passed"
