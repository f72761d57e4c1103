#!/usr/bin/env bash
# Runs the checks of .clang-tidy over all sources, as the preset clang compiles them, and fails with
# what they find. Does not build.
#
#   scripts/tidy.sh             all sources
#   scripts/tidy.sh FILE...     these

# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

for file in "$@"; do
    [[ -f $file ]] || refuse "'$file' is no file"
done
configure clang
compiled=$top/build/clang/compile_commands.json
say "clang-tidy"
if (($# > 0)); then
    printf '%s\0' "$@"
else
    sources | grep -z -E '\.(c|cpp)$' | while IFS= read -r -d '' file; do
        # A source that the project does not compile by itself is none of clang-tidy's.
        ! grep -q -F "\"file\": \"$file\"" "$compiled" || printf '%s\0' "$file"
    done
fi | xargs -0 -n 4 -P "$(nproc)" clang-tidy-14 --quiet -p "$top/build/clang" \
    2> >(grep -v ' warnings\{0,1\} generated\.$' >&2) || # those in headers of the system
    fail "see the findings above"
