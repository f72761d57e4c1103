#!/usr/bin/env bash
# Makes docs/report.png anew, the picture of the report in the README: three passes over stand-ins of
# the corpus, in some five minutes. Leave the machine alone meanwhile.
#
#   scripts/picture.sh             takes no arguments
#   scripts/picture.sh -h, --help  this text

# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

(($# == 0)) || refuse "'$1' is not known: takes no arguments"
"$top/scripts/install.sh" --tests
build release ntkperf ntkcorpus ntkreport
bin=$top/build/release/bin
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
"$bin/ntkcorpus" "$scratch/corpus"
for pass in 1 2 3; do
    say "pass $pass of 3"
    (cd "$scratch/corpus" && "$bin/ntkperf" -B "-x$scratch/pass$pass.jsonl" </dev/null >/dev/null)
done
"$bin/ntkreport" --html "$scratch/report.html" "$scratch"/pass*.jsonl
/usr/bin/python3 "$top/tests/report/page/browser/test_page.py" --picture "$top/docs/report.png" \
    "$scratch/report.html"
say "docs/report.png is made anew"
