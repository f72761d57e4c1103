# shellcheck shell=bash
# What the scripts of this folder share; sourced, not run. Answers -h and --help, for which every
# script has a comment at its head.
#
# A cell is KIND/BUILD/GROUP: what is measured by one task. In a result directory
#   plan/CELL     is a file: what is to be measured, line by line "WORD REST"
#   cells/CELL    is a directory: what was measured, complete
#   failed/CELL   is a file: why the last submission gave it up
#   tries/CELL/   has a directory for each try that did not come to its end
#   submissions/  has for each what was submitted, and what the tasks said

set -euo pipefail
unset CDPATH
export LC_ALL=C

# shellcheck disable=SC2034 # of the scripts
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

show_help() {
    sed -n '2,${/^#/!q; s/^# \{0,1\}//; p}' "$0"
    exit 0
}

case ${1:-} in
    -h | --help) show_help ;;
esac

say() {
    printf '== %s\n' "$*"
}

# refuse TEXT: for arguments that the script does not know.
refuse() {
    printf '%s: %s; --help tells more\n' "$(basename "$0")" "$*" >&2
    exit 2
}

fail() {
    printf '%s: %s\n' "$(basename "$0")" "$*" >&2
    exit 1
}

# count NUMBER NOUN: "1 cell", "2 cells".
count() {
    printf '%d %s%s' "$1" "$2" "$([[ $1 == 1 ]] || echo s)"
}

# Names of kinds, builds and groups are names of directories and words of a line.
is_name() {
    [[ $1 =~ ^[A-Za-z0-9_][A-Za-z0-9_.+-]*$ ]]
}

# told WORD FILE: the rest of the lines that begin with the word.
told() {
    sed -n "s/^$1 //p" "$2"
}

# identity FILE: of a plan or of a cell's cell.txt, what may change figures.
identity() {
    grep -E '^(program|library|corpus|key) ' "$1"
}

sum_of() {
    sha256sum <"$1" | cut -d ' ' -f 1
}

# library_identity RECORDS: the files of the measured library that the run had loaded.
library_identity() {
    local path
    head -n 1 "$1" | sed 's/"corpus":.*//' | grep -o '"path":"[^"]*"' | cut -d '"' -f 4 |
        while IFS= read -r path; do
            printf 'library %s %s\n' "$(basename "$path")" "$(sum_of "$path")"
        done
}

# corpus_identity DIRECTORY: of all files in it.
corpus_identity() {
    (cd "$1" && find . -maxdepth 1 -type f -o -maxdepth 1 -type l | sort | tr '\n' '\0' |
        xargs -0 --no-run-if-empty sha256sum) | sha256sum | cut -d ' ' -f 1
}

# failed_tests RECORDS: how many tests of a complete run failed; nothing if it is not complete.
failed_tests() {
    tail -n 1 "$1" 2>/dev/null |
        sed -n 's/.*"record":"end","tests":[1-9][0-9]*,"failed":\([0-9]*\),"complete":true.*/\1/p'
}

# is_whole DIRECTORY: all files of a cell are there, and the run came to its end.
is_whole() {
    local file
    for file in ntkperf.txt ntkperf.csv ntkperf_sum.csv ntkperf.jsonl; do
        [[ -s $1/$file ]] || return 1
    done
    [[ -n $(failed_tests "$1/ntkperf.jsonl") ]]
}

# differences CELL.TXT PLAN: what was measured in another way than it is planned, in words.
differences() {
    local word was is all=''
    for word in program library corpus key; do
        was=$(told "$word" "$1" | paste -s -d ' ') is=$(told "$word" "$2" | paste -s -d ' ')
        if [[ $was == "$is" ]]; then
            continue
        fi
        case $word in
            program) all+=', with another ntkperf' ;;
            library) all+=', with another build of the library' ;;
            corpus) all+=', with other files in the corpus' ;;
            key) all+=", with the keys $was, not $is" ;;
        esac
    done
    printf '%s' "${all#, }"
}

# state RESULTS CELL PLAN: "measured", "missing", "damaged", or "other" and what differs.
state() {
    local cell=$1/cells/$2
    if [[ ! -e $cell ]]; then
        echo missing
    elif [[ ! -s $cell/cell.txt ]] || ! is_whole "$cell"; then
        echo damaged
    elif [[ $(identity "$cell/cell.txt") != "$(identity "$3")" ]]; then
        echo "other $(differences "$cell/cell.txt" "$3")"
    else
        echo measured
    fi
}

# cells_in DIRECTORY: the cells of a plan, in the order of kinds, builds and groups.
cells_in() {
    [[ ! -d $1 ]] || (cd "$1" && find . -mindepth 3 -maxdepth 3 -type f -printf '%P\n' | sort)
}

# use_libraries DIRECTORY: for what is called from now on; an empty one for those of the program.
use_libraries() {
    unset LD_LIBRARY_PATH
    [[ -z $1 ]] || export LD_LIBRARY_PATH=$1
}
