#!/usr/bin/env bash
# Installs what is missing, builds everything and runs all tests. CTest's own lines come last, its
# status is the script's.

# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

(($# == 0)) || fail "takes no arguments"
"$top/scripts/install.sh"
build release
run_tests release
