#!/usr/bin/env bash
# Brings all sources into the format of .clang-format.
#
#   scripts/format.sh           formats them
#   scripts/format.sh --check   changes nothing, and fails with the places that would change

# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

case ${1:-} in
    --check) mode=(--dry-run --Werror) ;;
    "") mode=(-i) ;;
    *) refuse "'$1' is not known: the only argument is --check" ;;
esac
say "format of the sources"
sources | xargs -0 -n 32 -P "$(nproc)" clang-format-14 "${mode[@]}" ||
    fail "the places above are not in the format; scripts/format.sh brings them into it"
