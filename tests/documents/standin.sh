#!/usr/bin/env bash
# In place of the programs that a document's commands call and that would install, build everything
# or need rights, or whose status depends on the machine: does what its name says, as far as the
# documents need it. Of a build it makes what the tree of NTK_BUILD does not have: ntkperf with a new
# benchmark.

set -euo pipefail

refuse() {
    echo "${0##*/}: $*" >&2
    exit 1
}

# A preset of CMakePresets.json in the working directory.
need_preset() {
    grep -q "\"name\": \"$1\", \"configurePreset\"" CMakePresets.json || refuse "no preset $1"
}

# The benchmarks that CMakeLists.txt of perf/ names and NTK_TOP does not have.
new_benchmarks() {
    local file
    sed -n 's/^    \(p_[a-z0-9_]*\.cpp\)$/\1/p' perf/CMakeLists.txt | while read -r file; do
        [[ -e $NTK_TOP/perf/$file ]] || echo "$file"
    done
}

# Compiled and linked as the tree does it with the last benchmark that it has.
build_ntkperf() {
    local file object objects='' known=perf/CMakeFiles/perf.dir/p_dczfp.cpp.o command
    for file in $(new_benchmarks); do
        object=$PWD/build/${file%.cpp}.o
        objects+=" '$object'"
        command=$(ninja -C "$NTK_BUILD" -t commands "$known" | grep -v '^ninja' | tail -n 1 |
            sed "s|$known|'$object'|g; s| -c .*| -c '$PWD/perf/$file'|")
        (cd "$NTK_BUILD" && eval "$command")
    done
    [[ -n $objects ]] || return 0
    rm -f build/release/bin/ntkperf
    command=$(ninja -C "$NTK_BUILD" -t commands bin/ntkperf | tail -n 1 |
        sed "s| $known | $known$objects |; s| -o bin/ntkperf | -o '$PWD/build/release/bin/ntkperf' |")
    (cd "$NTK_BUILD" && eval "$command")
}

build() {
    local preset='' target targets=()
    while (($# > 0)); do
        case $1 in
            --preset) preset=$2 && shift ;;
            --parallel) shift ;;
            --target) ;;
            -*) refuse "unknown argument $1" ;;
            *) targets+=("$1") ;;
        esac
        shift
    done
    need_preset "$preset"
    for target in "${targets[@]}"; do
        ninja -C "$NTK_BUILD" -t query "$target" >/dev/null || refuse "no target $target"
        [[ $target != ntkperf ]] || build_ntkperf
        mkdir -p "build/$preset/bin"
        [[ -e build/$preset/bin/$target ]] ||
            printf '#!/bin/sh\necho %s\n' "$target" >"build/$preset/bin/$target"
        chmod +x "build/$preset/bin/$target"
    done
    echo "built ${targets[*]:-everything}"
}

case ${0##*/} in
    dpkg-query) echo installed ;;
    # A verdict fails no test, and shall not take long.
    ntkcompare) "$NTK_BUILD/bin/ntkcompare" --time=0.1 "$@" || (($? == 1)) ;;
    taskset)
        [[ $1 == -c && $2 =~ ^[0-9]+$ ]] || refuse "unknown arguments $*"
        exec "${@:3}"
        ;;
    setarch)
        [[ $1 == -R ]] || refuse "unknown arguments $*"
        exec "${@:2}"
        ;;
    cmake)
        [[ $1 == --build ]] && build "${@:2}" && exit
        [[ $1 == --preset ]] || refuse "unknown arguments $*"
        need_preset "$2"
        ;;
    ctest)
        [[ $1 == --preset ]] || refuse "unknown arguments $*"
        need_preset "$2"
        [[ ${3:-} != -R ]] || "$NTK_CTEST" --test-dir "$NTK_BUILD" -N -R "$4" |
            grep 'Total Tests: [1-9]'
        ;;
esac
