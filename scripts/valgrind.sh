#!/usr/bin/env bash
# Runs ntkperf under valgrind, all tests with one short length and one call each, and fails with what
# valgrind reports (bytes used before they are written, blocks used when they are gone or never
# released) and with tests that fail.
#
#   scripts/valgrind.sh            the program of the preset release, the one that measures
#   scripts/valgrind.sh PRESET     that of another preset; dev names also the lines of the sources
#
# Nothing has to be switched off with -T: valgrind shows a processor without AVX-512, whose
# instructions it does not know, and whatever chooses code by CPUID stays within AVX2. The code for
# AVX-512 has the tests with the sanitizers alone.

# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"
# shellcheck source-path=SCRIPTDIR source=results.sh
. "$top/scripts/results.sh"

[[ $# -le 1 && ${1:-} != -* ]] || refuse "usage: scripts/valgrind.sh [PRESET]"
preset=${1:-release}
need_writable "$top/build"
build "$preset" ntkperf ntkcorpus
programs=$top/build/$preset/bin
room=$(mktemp -d)
trap 'rm -rf "$room"' EXIT

"$programs/ntkcorpus" "$room" >/dev/null
say "ntkperf under valgrind"
# What the program keeps for its user would be figures of valgrind's processor.
(cd "$room" && XDG_CACHE_HOME=$room valgrind --quiet --error-exitcode=1 --track-origins=yes \
    --leak-check=full --errors-for-leak-kinds=definite,indirect \
    "$programs/ntkperf" -B -dMethod=Manual -dNumLoops=1 -dCodeLength=2001 -dHuffLength=1024 \
    -dCodeFile=obj1 "-l$room" -usum.csv) </dev/null >"$room/log" ||
    fail "valgrind found the errors above"
failed=$(failed_tests "$room/sum.csv")
[[ -z $failed ]] || fail "nothing found, but of $(count_tests "$room/sum.csv") tests failed: $failed"
(($(count_tests "$room/sum.csv") > 30)) || fail "only $(count_tests "$room/sum.csv") tests ran"
say "nothing found in $(count_tests "$room/sum.csv") tests"
