# zsh_candidates.zsh FOLDER LINE: prints what zsh offers at the end of the line, with the completions of the folder.
# Completion works in an interactive shell alone, so one is started on a terminal of its own.
zmodload zsh/zpty
export COMPLETIONS=$1 ZDOTDIR=$(mktemp -d)
trap 'rm -rf $ZDOTDIR' EXIT

cat >$ZDOTDIR/.zshrc <<'END'
PROMPT= RPROMPT= LISTMAX=-1
fpath=($COMPLETIONS $fpath)
autoload -Uz compinit && compinit -u -D
# What a completion function offers goes through this. Some calls only fill arrays.
compadd() {
    local -a found
    [[ "$*" == *-[OAD]\ * ]] || { builtin compadd -A found "$@"; print -rl -- offer:$^found; }
    builtin compadd "$@"
}
zle -C complete-word complete-word _main_complete
show() { print; zle complete-word; print "end of offers"; exit }
zle -N show
bindkey '^I' show
zle-line-init() { print; print "ready" }
zle -N zle-line-init
END

# Reads up to the line, and prints the offers before it.
await() {
    local line
    while zpty -r shell line; do
        line=${${line%$'\n'}%$'\r'}
        [[ $line == *$1 ]] && return
        [[ $line == offer:* ]] && print -r -- ${line#offer:}
    done
    exit 1
}

zpty shell zsh -d -i
await ready
zpty -n -w shell $2$'\t'
await "end of offers"
