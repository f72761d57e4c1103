#!/usr/bin/env bash
# The man pages and completions that the build makes of the programs' help.
#
#   test_pages.sh man|bash|zsh PROGRAMS PAGES         the folder of each
#
# Ends with 77 when what reads them is not installed.

set -uo pipefail

what=$1 programs=$2 pages=$3
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
room=$(mktemp -d)
trap 'rm -rf "$room"' EXIT
export PATH=$programs:$PATH
failures=0

skip() {
    echo "skipped: $1 is not installed"
    exit 77
}

# fault TITLE TEXT
fault() {
    printf -- '-- %s:\n%s\n' "$1" "$2"
    failures=$((failures + 1))
}

installed_programs() {
    find "$pages" -name '*.1.gz' -printf '%f\n' | sed 's/\.1\.gz$//'
}

# The text as man shows it, in lines that need no break, and with all characters that it may use.
test_man() {
    local name key
    command -v man >/dev/null || skip man-db
    for name in $(installed_programs); do
        key=--help
        [[ $name != ntkperf ]] || key=-'??'
        "$name" "$key" >"$room/help"
        LC_ALL=C.UTF-8 MANWIDTH=400 man --warnings --nh --nj -l "$pages/$name.1.gz" \
            2>"$room/warnings" | LC_ALL=C.UTF-8 col -b >"$room/page"
        perl "$here/pages_check.pl" "$room/help" "$room/page" >"$room/faults" ||
            fault "$name.1" "$(<"$room/faults")"
        expect_surroundings "$name"
        [[ ! -s $room/warnings ]] || fault "$name.1: warnings of man" "$(<"$room/warnings")"
        [[ $(<"$room/page") == *"$name - "[a-z]* ]] || fault "$name.1" "no line for whatis"
    done
}

# What a page has beside the help: how the program ends, and the variables that the harness reads.
expect_surroundings() {
    local variable
    grep -q '^EXIT STATUS$' "$room/page" || fault "$1.1" "no exit status"
    [[ $1 == ntkperf ]] || return
    while read -r variable; do
        sed -n '/^ENVIRONMENT$/,/^EXIT/p' "$room/page" |
            grep -q "^ *$variable\b" || fault "$1.1" "the environment lacks $variable"
    done < <(grep -rhoE '(getenv|directoryOf)\("[A-Z_]+"' "$here/../../perflib/src" |
        sed 's/.*"\(.*\)"/\1/' | grep -vx HOME)
}

# expect LINE WORD...: what completes it, in any order.
expect() {
    local line=$1 wanted words
    shift
    wanted=$(printf '%s\n' "$@" | LC_ALL=C sort)
    words=$(offered "$line" | LC_ALL=C sort -u)
    [[ $words == "$wanted" ]] || fault "'$line' is completed by" "$words
-- and not by
$wanted"
}

# The letters of the keys that the short help lists are those that are offered.
expect_all_keys() {
    local listed words
    listed=$(ntkperf -h | sed -n 's/^-\(.\).*= .*/\1/p' | LC_ALL=C sort -u)
    words=$(offered 'ntkperf -' | sed 's/^-\(.\).*/\1/' | LC_ALL=C sort -u)
    [[ $words == "$listed" ]] || fault "keys that are offered" "$words
-- and not
$listed"
}

# "ntkperf -fntks" offers each function that the program lists.
expect_all_functions() {
    local head
    mapfile -t functions < <(ntkperf -e- | grep '^ntks')
    ((${#functions[@]} > 30)) || fault "functions" "only ${#functions[@]}"
    for head in '-f=' '-f' '-F'; do
        expect "ntkperf ${head}ntks" "${functions[@]/#/$head}"
    done
    expect 'ntkperf -f ntks' "${functions[@]}"
}

test_completions() {
    mkdir -p "$room/work/out"
    cd "$room/work" || exit
    touch quick.arg table.csv
    expect_all_keys
    expect_all_functions
    expect 'ntkperf -e' -e -e+ -e-
    expect 'ntkperf -f-ntksAdl' -f-ntksAdler32_8u
    expect 'ntkperf -dCodeL' -dCodeLength=
    expect 'ntkperf -LWA' -LWARN
    expect 'ntkperf -TSSE42,AVX2' -TSSE42,AVX2
    expect 'ntkperf -@qu' -@quick.arg
    expect 'ntkperf -B -o ta' table.csv
    expect 'ntkperf -lo' -lout/
    expect 'ntkcompare --p' --precision --patience
    expect 'ntkcompare --csv=ta' --csv=table.csv
    expect 'ntkcompare own ow' own
    expect 'ntkcompare own own -- -f=ntksAdl' -f=ntksAdler32_8u
    expect 'ntkreport --html=x ta' table.csv
    expect 'ntkguard --limit 3 ntkperf -fntksAdl' -fntksAdler32_8u
    expect 'ntkcorpus --fo' --force
}

case $what in
    man) test_man ;;
    bash)
        [[ -e /usr/share/bash-completion/bash_completion ]] || skip bash-completion
        # shellcheck source=bash_completion.sh
        source "$here/bash_completion.sh"
        for file in "$pages"/*.bash; do
            # shellcheck disable=SC1090
            source "$file"
        done
        test_completions
        ;;
    zsh)
        command -v zsh >/dev/null || skip zsh
        offered() { # what ends in "/" is a folder, which zsh shows without
            zsh -f "$here/zsh_completion.zsh" "$pages" "$1" | while read -r word; do
                [[ ! -d ${word#-l} ]] || word+=/
                printf "%s\n" "$word"
            done
        }
        test_completions
        ;;
esac
((failures == 0)) && echo "all hold"
