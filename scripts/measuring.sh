#!/usr/bin/env bash
# Makes docs/measuring.md anew: the text of scripts/measuring.template.md with the figures that
# ntkbench and bench_own_cost give on this machine. Takes about a quarter of an hour; until the end
# the document stays as it is. The figures are kept in build/measuring.
#
#   scripts/measuring.sh [CORPUS]   measures all files of the corpus and makes the document
#   scripts/measuring.sh --text     makes the document with the figures of the last run
#
# The corpus is the directory CORPUS, else $CORPUS, else corpus/ in the project's top folder.
#
# In the template
#   {{ntkbench NAME}}           is the table of a comparison on data of its own,
#   {{ntkbench NAME FILE...}}   that on these files of the corpus, with the ratios on all files,
#   {{bench_own_cost WHAT}}     is what that program prints, and
#   {{standing NAME | CALL | AGAINST | WANTED | FILES | TITLE | REMARK}}
#                               the line of a table of what is wanted (measuring.awk).

# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

template=$top/scripts/measuring.template.md
document=$top/docs/measuring.md
ntkbench=$top/build/release/bin/ntkbench
figures=$top/build/measuring
corpus_files=(bib book1 book2 geo news obj1 obj2 paper1 paper2 pic progc progl progp trans)

processor() {
    sed -n 's/^model name[[:space:]]*: //p' /proc/cpuinfo | head -n 1
}

packages() {
    dpkg-query --show --showformat='${source:Package} ${source:Version}\n' \
        libdeflate0 libisal2 zlib1g liblz4-1 liblzo2-2 libbz2-1.0 libdivsufsort3 libzfp1 |
        sort -u | paste -sd, | sed 's/,/, /g'
}

# The comparisons that the template shows, each with the files whose rows are shown.
shown() {
    sed -n 's/^{{ntkbench \(.*\)}}$/\1/p' "$template"
}

# The tables of bench_own_cost that the template shows.
shown_costs() {
    sed -n 's/^{{bench_own_cost \(.*\)}}$/\1/p' "$template"
}

# measure DIRECTORY: the machine and the rows of every comparison, a file each.
measure() {
    local name files
    processor >"$1/processor"
    packages | fold -s -w 98 | sed '2,$s/^/  /; s/ $//' >"$1/packages"
    nice >"$1/nice"
    cut -d ' ' -f 1 /proc/loadavg >"$1/load"
    while read -r name files; do
        say "ntkbench $name"
        # shellcheck disable=SC2086 # several files
        "$ntkbench" --corpus "$corpus" --markdown "$name" ${files:+"${corpus_files[@]}"} \
            </dev/null >"$1/$name"
    done < <(shown)
    for name in $(shown_costs); do
        say "bench_own_cost $name"
        "${ntkbench%/*}/bench_own_cost" "$name" </dev/null >"$1/own_cost_$name"
    done
}

measure_anew() {
    local name new
    "$top/scripts/install.sh"
    build release ntkbench bench_own_cost
    for name in $("$ntkbench" --list); do
        shown | grep -qx "$name\( .*\)\?" || fail "$template does not show the comparison $name"
    done
    rm -rf "$figures.new"
    mkdir "$figures.new"
    measure "$figures.new"
    rm -rf "$figures"
    mv "$figures.new" "$figures"
}

# need_figures NAME
need_figures() {
    [[ -f $figures/$1 ]] || fail "there are no figures of $1 in $figures: measure anew"
}

# table NAME SETTING...: one that measuring.awk makes of a comparison.
table() {
    local name=$1 setting settings=()
    shift
    need_figures "$name"
    for setting in "$@"; do
        settings+=(-v "$setting")
    done
    LC_ALL=C awk "${settings[@]}" -f "$top/scripts/measuring.awk" "$figures/$name"
}

# comparison NAME [FILE...]: its tables.
comparison() {
    local name=$1
    shift
    table "$name" table=rows "files=$*"
    if (($# > 0)); then
        table "$name" table=ratio
        table "$name" table=size
    fi
}

standing() {
    local fields i
    IFS='|' read -r -a fields <<<"$1|"
    for i in "${!fields[@]}"; do
        read -r "fields[$i]" <<<"${fields[i]}" # without the blanks around it
    done
    ((${#fields[@]} == 7)) || fail "$template: seven fields are wanted in {{standing $1}}"
    table "${fields[0]}" table=standing "call=${fields[1]}" "against=${fields[2]}" \
        "wanted=${fields[3]}" "files=${fields[4]}" "title=${fields[5]}" "remark=${fields[6]}"
}

# Prints the template with its {{...}} replaced.
filled_in() {
    local line name
    while IFS= read -r line; do
        name=${line##*'{{'}
        name=${name%'}}'}
        case $line in
        *'{{processor}}' | *'{{packages}}' | *'{{nice}}' | *'{{load}}')
            printf '%s%s\n' "${line%'{{'*}" "$(<"$figures/$name")"
            ;;
        '{{ntkbench '*'}}')
            # shellcheck disable=SC2086 # a comparison and files
            comparison ${name#ntkbench }
            ;;
        '{{bench_own_cost '*'}}')
            need_figures "own_cost_${name#bench_own_cost }"
            cat "$figures/own_cost_${name#bench_own_cost }"
            ;;
        '{{standing '*'}}') standing "${name#standing }" ;;
        *'{{'*) fail "$template: there is nothing to put in for $line" ;;
        *) printf '%s\n' "$line" ;;
        esac
    done <"$template"
}

if [[ ${1:-} == --text ]]; then
    (($# == 1)) || refuse "--text takes the figures of the last run, and no corpus"
    [[ -d $figures ]] || fail "there are no figures in $figures: measure first, without --text"
else
    [[ $# -le 1 && ${1:-} != -* ]] || refuse "the arguments are --text or the directory of the corpus"
    corpus=$(cd "${1:-${CORPUS:-$top/corpus}}" 2>/dev/null && pwd) ||
        fail "no corpus: '${1:-${CORPUS:-$top/corpus}}' is no directory that can be entered"
    measure_anew
fi
new=$(mktemp "$document.XXXXXX")
trap 'rm -f "$new"' EXIT
filled_in >"$new"
chmod 644 "$new"
mv "$new" "$document"
say "$document is made anew"
