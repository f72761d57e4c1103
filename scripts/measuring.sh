#!/usr/bin/env bash
# Makes docs/measuring.md anew: the text of scripts/measuring.template.md with the figures that
# ntkbench gives on this machine. Takes some minutes; until the end the document stays as it is.
#
#   scripts/measuring.sh [CORPUS]
#
# The corpus is the directory CORPUS, else $CORPUS, else corpus/ in the project's top folder.

# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

[[ $# -le 1 && ${1:-} != -* ]] || refuse "the only argument is the directory of the corpus"
corpus=$(cd "${1:-${CORPUS:-$top/corpus}}" 2>/dev/null && pwd) ||
    fail "no corpus: '${1:-${CORPUS:-$top/corpus}}' is no directory that can be entered"
template=$top/scripts/measuring.template.md
document=$top/docs/measuring.md
ntkbench=$top/build/release/bin/ntkbench

processor() {
    sed -n 's/^model name[[:space:]]*: //p' /proc/cpuinfo | head -n 1
}

packages() {
    dpkg-query --show --showformat='${source:Package} ${source:Version}\n' \
        libdeflate0 libisal2 zlib1g liblz4-1 liblzo2-2 libbz2-1.0 libzfp1 | sort -u | paste -sd, |
        sed 's/,/, /g'
}

# Prints the template with its {{...}} replaced.
filled_in() {
    local line
    while IFS= read -r line; do
        case $line in
        *'{{processor}}') printf '%s%s\n' "${line%'{{'*}" "$(processor)" ;;
        *'{{packages}}') printf '%s%s\n' "${line%'{{'*}" "$(packages)" |
            fold -s -w 98 | sed '2,$s/^/  /; s/ $//' ;;
        *'{{nice}}') printf '%s%s\n' "${line%'{{'*}" "$(nice)" ;;
        *'{{load}}') printf '%s%s\n' "${line%'{{'*}" "$(cut -d ' ' -f 1 /proc/loadavg)" ;;
        '{{ntkbench '*'}}')
            line=${line#'{{ntkbench '}
            say "ntkbench ${line%'}}'}" >&2
            "$ntkbench" --corpus "$corpus" --markdown "${line%'}}'}" </dev/null
            ;;
        *'{{'*) fail "$template: there is nothing to put in for $line" ;;
        *) printf '%s\n' "$line" ;;
        esac
    done <"$template"
}

"$top/scripts/install.sh"
build release ntkbench
for name in $("$ntkbench" --list); do
    grep -qx "{{ntkbench $name}}" "$template" || fail "$template does not show the comparison $name"
done
new=$(mktemp "$document.XXXXXX")
trap 'rm -f "$new"' EXIT
filled_in >"$new"
chmod 644 "$new"
mv "$new" "$document"
say "$document is made anew"
