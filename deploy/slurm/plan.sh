# shellcheck shell=bash
# From builds, kinds and groups to cells; sourced by submit.sh, after common.sh.

# shellcheck disable=SC2034,SC2154 # the variables of submit.sh

# Sets planned to the cells, and writes their plans into the scratch directory.
make_plan() {
    local kind build group cell
    make_groups
    make_builds
    local program input
    program=$(sum_of "$programs/ntkperf") input=$(corpus_identity "$corpus")
    planned=()
    for kind in "${kinds[@]}"; do
        for build in "${builds[@]}"; do
            for group in "${!group_keys[@]}"; do
                cell=${kind%%=*}/${build%%=*}/$group
                mkdir -p "$scratch/plan/${cell%/*}"
                [[ ! -e $scratch/plan/$cell ]] || refuse "the cell $cell is there twice"
                {
                    printf 'program %s\n' "$program"
                    cat "$scratch/build/${build%%=*}"
                    printf 'corpus %s\n' "$input"
                    printf 'key %s\n' "${keys[@]}" | grep -v '^key $' || true
                    cat "$scratch/group/$group"
                    printf '%s\n' "libraries ${directory_of[${build%%=*}]}" "input $corpus" \
                        "programs $programs" "limit $limit" "tries $tries"
                } >"$scratch/plan/$cell"
            done
        done
    done
    readarray -t planned < <(cells_in "$scratch/plan")
}

# Sets group_keys, from names to keys, and refuses groups that measure something twice.
make_groups() {
    local item sources functions
    declare -gA group_keys=()
    mkdir "$scratch/group"
    sources=$("$programs/ntkperf" -e -f-__ps | sed -n 's/^ *[0-9][0-9]*  .*  \([^ ]*\)$/\1/p' | sort -u)
    if ((${#groups[@]} == 0)); then
        readarray -t groups <<<"$sources"
    fi
    for item in "${groups[@]}"; do
        [[ -z ${group_keys[${item%%=*}]:-} ]] || refuse "the group ${item%%=*} is there twice"
        if [[ $item != *=* ]]; then
            grep -qx -- "$item" <<<"$sources" ||
                fail "ntkperf has no source $item, only $(paste -s -d ' ' <<<"$sources")." \
                    "Name the keys of other groups: --group $item=-fLZ4"
            item=$item=-m=$item
        fi
        group_keys[${item%%=*}]=${item#*=}
        write_group "${item%%=*}" "${item#*=}"
        functions=$(functions_of "${item%%=*}")
        [[ -n $functions ]] ||
            fail "no function belongs to the group ${item%%=*} (${item#*=}${keys[*]:+, with ${keys[*]}})"
        printf '%s\n' "$functions" >>"$scratch/functions"
    done
    refuse_overlaps
}

# write_group NAME KEYS: the keys as lines of a plan; quotes keep what has blanks together.
write_group() {
    local key chosen=()
    xargs --no-run-if-empty -n 1 printf 'key %s\n' <<<"$2" >"$scratch/group/$1" ||
        refuse "the keys of --group $1=$2 cannot be told apart, see above"
    readarray -t chosen < <(told key "$scratch/group/$1")
    ((${#chosen[@]} > 0)) || refuse "--group $1=: keys are missing behind the ="
    for key in "${chosen[@]}"; do
        check_key "$key"
    done
}

# The functions of a group, each with the keys that choose what is measured of it. The keys of all
# cells may leave some of them out.
functions_of() {
    local settings chosen=()
    readarray -t chosen < <(told key "$scratch/group/$1")
    settings=$(printf '%s\n' "${chosen[@]}" | grep -v '^-[ftmk]' | sort | paste -s -d ' ')
    (cd "$corpus" && "$programs/ntkperf" "${keys[@]}" "${chosen[@]}" -f-__ps -e-) | sed -n "s|^ *\([A-Za-z_][A-Za-z0-9_]*\) *$|\1 $settings|p"
}

refuse_overlaps() {
    local twice
    twice=$(sort "$scratch/functions" | uniq -d | cut -d ' ' -f 1 | paste -s -d ' ')
    [[ -z $twice ]] || fail "several groups measure $twice: choose them apart with -f-, -t- or -m-"
}

# Sets directory_of and writes which files each build is made of, as the loader finds them here.
make_builds() {
    local build name directory
    declare -gA directory_of=()
    mkdir "$scratch/build"
    for build in "${builds[@]}"; do
        name=${build%%=*} directory=''
        if [[ ${build#*=} != own ]]; then
            [[ $build == *=* ]] || refuse "--build $build: name the directory, --build $build=DIR"
            directory=$(library_directory "${build#*=}")
            [[ -n $directory ]] || fail "the build $name: there is no library in ${build#*=}"
        fi
        [[ $directory != *[\"\\:]* ]] || fail "the build $name: $directory has a \" \\ or :"
        directory_of[$name]=$directory
        probe "$name" "$directory"
    done
}

# The libraries are in the directory itself, or in its lib/.
library_directory() {
    local directory
    for directory in "$1" "$1/lib"; do
        if compgen -G "$directory/lib*.so.*" >/dev/null; then
            (cd "$directory" && pwd)
            return
        fi
    done
}

# probe NAME DIRECTORY: a run of no test, whose records tell which files were loaded.
probe() {
    local records=$scratch/probe.jsonl
    (use_libraries "$2" && "$programs/ntkguard" "$programs/ntkperf" -B -f=none "-x$records") \
        >"$scratch/log" 2>&1 </dev/null ||
        fail "the build $1 cannot be loaded: $(grep -v '^$' "$scratch/log" | tail -n 3)"
    library_identity "$records" >"$scratch/build/$1"
    [[ -z $2 ]] || grep -qF "\"path\":\"$2/" "$records" ||
        fail "the build $1: nothing was loaded from $2: $(grep '^-- ' "$scratch/log" | head -n 3)"
}
