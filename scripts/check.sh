#!/usr/bin/env bash
# Installs what is missing, builds everything and runs all tests. CTest's own lines come last, its
# status is the script's.
#
#   scripts/check.sh               takes no arguments
#   scripts/check.sh -h, --help    this text
#
# Building takes minutes the first time, the tests take minutes every time. To run some of them:
# ctest --preset release -R PATTERN

# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

(($# == 0)) || refuse "'$1' is not known: takes no arguments"
need_writable "$top/build"
"$top/scripts/install.sh" --tests
build release
run_tests release
