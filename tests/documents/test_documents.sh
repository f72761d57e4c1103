#!/usr/bin/env bash
# What the documents show, tried as their readers would: every block says how it is tested
# (blocks.pl), and is. Commands run in a project of their own, with this build's programs, one
# document after the other; each goes on in the directory where the block before it ended.
#
#   test_documents.sh commands|python|r TOP BUILD CTEST OTHER_LIBRARY
#
# Ends with 77 when there is nothing to run the language with.

set -uo pipefail

what=$1
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
export NTK_TOP=$2 NTK_BUILD=$3 NTK_CTEST=$4
other_library=$5
documents=(README.md docs/guide.md docs/design.md docs/trust.md CONTRIBUTING.md)
room=$(mktemp -d)
trap 'rm -rf "$room"' EXIT
project=$room/project
failures=0
runs=0

make_project() {
    local name
    mkdir -p "$project/build/release/bin" "$room/bin" "$room/blocks" "$room/nights" \
        "$room/home/ntk-trial"
    cp -r "$NTK_TOP/scripts" "$NTK_TOP/perf" "$NTK_TOP/CMakePresets.json" "$project"
    touch -d @0 "$project/CMakePresets.json"
    touch "$project/build/release/build.ninja"
    ln -s "$NTK_BUILD/lib" "$project/build/release/lib"
    ln -s "$NTK_BUILD/bin/"{psexample,ntkcorpus,ntkguard} "$project/build/release/bin"
    for name in cmake ctest dpkg-query taskset setarch; do
        ln -s "$here/standin.sh" "$room/bin/$name"
    done
    ln -s "$here/standin.sh" "$project/build/release/bin/ntkcompare"
    ln -s "$other_library" "$room/home/ntk-trial/libntkdc.so.12"
    "$NTK_BUILD/bin/ntkcorpus" "$room/corpus" >/dev/null
    unset LD_LIBRARY_PATH XDG_CACHE_HOME CORPUS
    export HOME=$room/home PATH=$room/bin:$PATH
}

calls_bench() {
    grep -q 'scripts/bench.sh' "$1"
}

# choose_programs BLOCK: bench.sh would measure for a minute and more, so it gets the program that
# measures nothing, and one in place of ntkreport for what that leaves.
choose_programs() {
    local folder=$NTK_BUILD/bin name own
    ! calls_bench "$1" || folder=$NTK_TOP/tests/scripts
    for name in ntkperf ntkreport; do
        own=$project/build/release/bin/$name
        [[ ! -L $own && -e $own ]] || ln -sf "$folder/$name" "$own"
    done
}

# fault PLACE TEXT [FILE]: with what the file holds.
fault() {
    printf -- '-- %s: %s\n' "$1" "$2"
    [[ -z ${3:-} ]] || sed 's/^/     /' "$3"
    failures=$((failures + 1))
}

# The commands of a block: its own, or those behind "$ ". "$ cat NAME" makes the file that it shows.
commands_of() {
    if ! grep -q '^\$ ' "$1"; then
        sed "s|/path/to/the/corpus|$room/corpus|; s|/path/to/nights|$room/nights|
            s|/path/to/reference /path/to/tonight|own own -- -f=ntksAdler32_8u -dCodeLength=1000|" "$1"
        return
    fi
    local line name=''
    while IFS= read -r line; do
        case $line in
            '$ cat '*)
                name=${line#'$ cat '}
                printf 'mkdir -p "%s" && : >%s\n' "$(dirname "$name")" "$name"
                ;;
            '$ '*)
                name=''
                printf '%s\n' "${line#'$ '}"
                ;;
            *) [[ -z $name ]] || printf 'printf "%%s\\n" %q | tee -a %s\n' "$line" "$name" ;;
        esac
    done <"$1"
}

# run_commands PLACE BLOCK REASON: the output goes to $room/printed, the shown lines into it.
run_commands() {
    local place=$1 block=$2 reason=$3 status=0 directory
    directory=$(<"$room/directory")
    ! calls_bench "$block" || directory=$project # for which its path is written
    commands_of "$block" >"$room/commands"
    calls_bench "$block" || echo "pwd >'$room/directory'" >>"$room/commands"
    (cd "$directory" && bash -e "$room/commands") >"$room/printed" 2>&1 </dev/null ||
        status=$?
    ((status == 0)) || fault "$place" "ends with status $status" "$room/printed"
    [[ -s $room/printed ]] || fault "$place" "prints nothing"
    if [[ $reason == - ]] && grep -q '^\$ ' "$block"; then
        grep -v '^\$ ' "$block" >"$room/shown"
        compare "$place" "$room/shown" "$room/printed"
    fi
}

# compare PLACE SHOWN WHOLE
compare() {
    perl "$here/lines.pl" "$2" "$3" >"$room/difference" ||
        fault "$1" "$(<"$room/difference")" "$3"
}

# paste PLACE BLOCK "FILE [behind TEXT]": a file of the project that is not in perf/ has to compile.
paste() {
    local place=$1 block=$2 file=${3%% *} text='' own
    [[ $3 != *' behind '* ]] || text=${3#* behind }
    own=$NTK_TOP/$file
    if [[ -e $own && ! -e $project/$file ]]; then
        mkdir -p "$project/$(dirname "$file")"
        cp "$own" "$project/$file"
    fi
    perl "$here/paste.pl" "$block" "$project/$file" ${text:+"$text"} >"$room/difference" ||
        fault "$place" "$(<"$room/difference")"
    [[ $file == *.cpp && -e $own ]] || return
    (cd "$NTK_BUILD" && eval "$(ninja -t commands "$own^" | tail -n 1 |
        sed "s| -c .*| -fsyntax-only '$project/$file'|; s| -MD.* -o [^ ]*||")") \
        >"$room/printed" 2>&1 || fault "$place" "does not compile" "$room/printed"
}

# try_block NUMBER PLACE MARK ARGUMENT
try_block() {
    local block=$room/blocks/$1 place=$2 mark=$3 argument=$4
    choose_programs "$block"
    case $mark in
        runs)
            run_commands "$place" "$block" "$argument"
            runs=$((runs + 1))
            ;;
        printed)
            [[ $argument == - ]] || cp "$project/$argument" "$room/printed" || fault "$place" "no file"
            compare "$place" "$block" "$room/printed"
            ;;
        pasted) paste "$place" "$block" "$argument" ;;
        quoted)
            perl "$here/lines.pl" --exact "$block" "$NTK_TOP/$argument" >"$room/difference" ||
                fault "$place" "$(<"$room/difference")"
            ;;
    esac
}

# A table to load: files shorter than a length, hints, functions without files. And the comparison
# of a night.
make_table() {
    cd "$room/corpus" || exit
    "$NTK_BUILD/bin/ntkperf" -B -dMethod=Manual -dNumLoops=1 -fLZ4 -fSelectSort -fAdler \
        "-dCodeFile=obj1;book1" "-r$room/ntkperf.csv" >/dev/null
    "$NTK_BUILD/bin/ntkcompare" -t 0.05 "--json=$room/night.json" own own -- -f=ntksAdler32_8u \
        -dCodeLength=1000 >/dev/null
    cd "$room" || exit
}

# try_table PLACE BLOCK INTERPRETER...: the block, then what has to hold.
try_table() {
    local place=$1 block=$2 check=table_check
    shift 2
    [[ $(<"$block") != *.json* ]] || check=history_check
    cat "$block" "$here/$check.$what" >"$room/script"
    "$@" "$room/script" >"$room/printed" 2>&1 || fault "$place" "does not hold" "$room/printed"
    runs=$((runs + 1))
}

# The interpreter that has what the blocks load.
find_interpreter() {
    local python
    case $what in
        r) command -v Rscript ;;
        python)
            for python in python3 /usr/bin/python3; do
                "$python" -c 'import pandas' 2>/dev/null && echo "$python" && return
            done
            ;;
    esac
}

make_project
(cd "$NTK_TOP" && perl "$here/blocks.pl" "$room/blocks" "${documents[@]}") >"$room/index" ||
    failures=$((failures + 1))
if [[ $what != commands ]]; then
    interpreter=$(find_interpreter)
    [[ -n $interpreter ]] || { echo "skipped: no interpreter for the blocks in $what" && exit 77; }
    make_table
fi
last_document=
while IFS=$'\t' read -r number place language mark argument; do
    [[ ${place%:*} == "$last_document" ]] || echo "$project" >"$room/directory"
    last_document=${place%:*}
    case $what,$language in
        "commands,r" | "commands,python") ;;
        commands,*) try_block "$number" "$place" "$mark" "$argument" ;;
        "$language,$what") try_table "$place" "$room/blocks/$number" "$interpreter" ;;
    esac
done <"$room/index"
((runs > 0)) || fault "$what" "nothing was run"
((failures == 0)) && echo "all hold: $runs blocks ran"
