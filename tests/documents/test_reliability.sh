#!/usr/bin/env bash
# Each promise of docs/reliability.md names the test that holds it: are there such tests, and does
# every row of a table have one?
#
#   test_reliability.sh TOP

set -uo pipefail

top=$1
page=$top/docs/reliability.md
failures=0

fault() {
    printf -- '-- %s: %s\n' "$page" "$1"
    failures=$((failures + 1))
}

rows=0
while IFS= read -r row; do
    rows=$((rows + 1))
    last_cell=${row% |}
    names=$(grep -oE '[A-Z][A-Za-z]*\.[A-Z][A-Za-z]*' <<<"${last_cell##* | }")
    [[ -n $names ]] || fault "no test in: $row"
    for name in $names; do
        grep -rqE --include='*.cpp' "TEST(_F|_P)?\(${name%.*}, ${name#*.}\)" "$top/tests" ||
            fault "there is no test $name"
    done
done < <(grep -E '^\| ' "$page" | grep -v '^| deed')

((rows > 20)) || fault "only $rows promises were found"
((failures == 0))
