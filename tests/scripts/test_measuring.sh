#!/usr/bin/env bash
# scripts/measuring.sh --text in a project of its own, with figures of two comparisons. Nothing is
# built or measured.
#
#   test_measuring.sh

set -uo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
room=$(mktemp -d)
trap 'rm -rf "$room"' EXIT
failures=0

make_project() {
    mkdir -p "$room/docs" "$room/build/measuring"
    cp -r "$here/../../scripts" "$room"
    cd "$room/build/measuring" || exit 1
    echo "a processor" >processor
    echo -15 >'nice'
    echo 0.50 >load
    printf 'one 1, two 2,\n  three 3\n' >packages
    local title='| call | data | bytes | clocks/byte | against | clocks/byte | ratio | spread | size |
|---|---|---:|---:|---|---:|---:|---:|---:|'
    printf '%s\n' "$title" \
        '| decode | made | 9 | 1.000 | other | 2.000 | 0.500 | 0.500-0.500 |  |' >checksum
    printf '| command |\n|---|\n| quick |\n' >own_cost_answers
    printf '%s\n' "$title" \
        '| encode, level 1 | bib | 9 | 1.000 | other | 2.000 | 0.500 | 0.4-0.6 | 0.900 |' \
        '| encode, level 1 | bib | 9 | 1.000 | fast: level 3 | 2.000 | 1.500 | 0.4-0.6 | 0.990 |' \
        '| decode | bib | 9 | 1.000 | other | 2.000 | 0.080 | 0.4-0.6 |  |' \
        '| encode, level 1 | geo | 9 | 1.000 | other | 2.000 | 0.700 | 0.4-0.6 | 1.001 |' \
        '| encode, level 1 | pic | 9 | 1.000 | other | 2.000 | 0.690 | 0.4-0.6 | 1.000 |' \
        '| encode, level 1 | pic | 9 | 1.000 | fast: level 5 | 2.000 | 0.900 | 0.4-0.6 | 1.000 |' \
        '| decode | pic | 9 | 1.000 | other | 2.000 | 0.100 | 0.4-0.6 |  |' >deflate
}

# expect WHAT ACTUAL WANTED
expect() {
    [[ $2 == "$3" ]] && return
    printf -- '-- %s:\n%s\n-- is not as wanted:\n%s\n' "$1" "$2" "$3"
    failures=$((failures + 1))
}

# page TEMPLATE: sets output to the document made of it, status, and errors.
page() {
    printf '%s\n' "$1" >"$room/scripts/measuring.template.md"
    rm -f "$room/docs/"*
    "$room/scripts/measuring.sh" --text >"$room/console" 2>"$room/errors"
    status=$?
    errors=$(<"$room/errors")
    output=$(cat "$room/docs/measuring.md" 2>/dev/null || echo none)
    expect "files beside the document" "$(find "$room/docs" -type f ! -name measuring.md)" ""
}

test_texts_and_own_data() {
    page 'On {{processor}}
with: {{packages}}
{{ntkbench checksum}}
{{bench_own_cost answers}}'
    expect "a comparison on data of its own" "$output" "On a processor
with: one 1, two 2,
  three 3
$(cat "$room/build/measuring/checksum" "$room/build/measuring/own_cost_answers")"
}

test_files() {
    page '{{ntkbench deflate pic}}'
    expect "a comparison on files" "$output" "$(head -n 2 "$room/build/measuring/deflate")
$(grep '| pic |' "$room/build/measuring/deflate")

| ratio: call | against | bib | geo | pic |
|---|---|---:|---:|---:|
| encode, level 1 | other | 0.500 | 0.700 | 0.690 |
| encode, level 1 | fast | 1.500 |  | 0.900 |
| decode | other | 0.080 |  | 0.100 |

| size: call | against | bib | geo | pic |
|---|---|---:|---:|---:|
| encode, level 1 | other | 0.900 | 1.001 | 1.000 |
| encode, level 1 | fast | 0.990 |  | 1.000 |
| decode | other |  |  |  |"
}

test_standing() {
    local template line
    while IFS='%' read -r template line; do
        page "{{standing $template}}"
        expect "standing $template" "$output" "$line"
    done <<'end'
deflate | encode.* | other | 0.70 | | A | why%| A | other | 0.70 | 0.700 (geo) | 1.001 (geo) | 3 of 3 |  |
deflate | encode.* | other | 0.69 | | A | why%| A | other | 0.69 | 0.700 (geo) | 1.001 (geo) | 2 of 3 | why |
deflate | encode.* | other | 0.70, size 1.000 | | A | why%| A | other | 0.70, size 1.000 | 0.700 (geo) | 1.001 (geo) | 2 of 3 | why |
deflate | encode.* | other | 0.70, size 1.000 | bib pic | A | why%| A | other | 0.70, size 1.000 | 0.690 (pic) | 1.000 (pic) | 2 of 2 |  |
deflate | encode.* | .* | 0.80 | | A | see [this](#there)%| A | other and fast | 0.80 | 1.500 (bib) | 1.001 (geo) | 1 of 3 | see [this](#there) |
deflate | encode.* | fast.* | | | A | why%| A | fast |  | 1.500 (bib) | 1.000 (pic) |  |  |
deflate | decode | other | 0.09 | | A | why%| A | other | 0.09 | 0.100 (pic) |  | 1 of 2 | why |
end
}

# The document that is there stays.
test_what_cannot_be_made() {
    local template wanted
    while IFS='%' read -r template wanted; do
        page "$template"
        expect "status of $template" "$status" 1
        expect "document of $template" "$output" none
        [[ $errors == *"$wanted"* ]] || expect "message of $template" "$errors" "$wanted"
    done <<'end'
{{standing deflate | enc | other | 0.70 | | A | why}}%no row fits enc and other
{{standing deflate | encode.* | other | 0.70}}%seven fields
{{ntkbench lzss}}%no figures of lzss
{{weather}}%nothing to put in
end
    rm -r "$room/build/measuring"
    page 'text'
    expect "status without figures" "$status" 1
    [[ $errors == *"measure first"* ]] || expect "message without figures" "$errors" "measure first"
}

make_project
test_texts_and_own_data
test_files
test_standing
test_what_cannot_be_made
((failures == 0)) || exit 1
echo "all as wanted"
