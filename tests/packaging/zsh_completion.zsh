# What zsh offers to complete a command line, each on a line.
#
#   zsh -f zsh_completion.zsh PAGES LINE        PAGES is the folder of the completions
#
# A second shell, behind a terminal of its own, gets the line and a tab. The words that its
# completion adds go into a file, too.

zmodload zsh/zpty
words=$(mktemp)
zpty shell zsh -f -i
zpty -w shell "PROMPT= fpath=(${(q)1} \$fpath) offered=$words"
zpty -w shell 'autoload -Uz compinit; compinit -D -u'
zpty -w shell 'function compadd() {
    if [[ ${@[1,(i)(-|--)]} != *-(O|A|D)\ * ]]; then
        local -a hits; builtin compadd -A hits "$@"
        (($#hits)) && print -l -- $IPREFIX$^hits >>$offered
    fi
    builtin compadd "$@"
}'
zpty -w shell 'finished() { print fini"shed" }; comppostfuncs=(finished); LISTMAX=0'
zpty -w shell 'bindkey "^I" complete-word; print rea"dy"'
zpty -r shell text '*ready*'
zpty -w -n shell "$2"$'\t'
zpty -r shell text '*finished*'
zpty -d shell
cat $words
rm $words
