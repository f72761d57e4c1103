# shellcheck shell=bash
# What bash offers to complete a command line. To be sourced.

# shellcheck disable=SC1091 # of the package bash-completion
source /usr/share/bash-completion/bash_completion

# offered LINE: the cursor is at its end. The function gets the words as bash splits them; what it
# answers replaces the last of them, and is printed with the part of the word that stays.
offered() {
    local function stays=${1##* }
    [[ $stays =~ ^.*[=@] ]] && stays=${BASH_REMATCH[0]} || stays=''
    COMP_LINE=$1 COMP_POINT=${#1} COMP_WORDBREAKS=$' \t\n"\'><=;|&(:@' COMP_TYPE=9 COMP_KEY=9
    mapfile -t COMP_WORDS < <(grep -oE '[=@]|[^=@ ]+' <<<"$1")
    [[ $1 != *' ' ]] || COMP_WORDS+=('')
    COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
    COMPREPLY=()
    function=$(complete -p "${COMP_WORDS[0]##*/}" | sed 's/.*-F \([^ ]*\).*/\1/')
    "$function" "${COMP_WORDS[0]}" "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD - 1]}" \
        2> >(grep -v 'compopt: not currently executing' >&2)
    ((${#COMPREPLY[@]} == 0)) || printf '%s\n' "${COMPREPLY[@]/#/$stays}"
}
