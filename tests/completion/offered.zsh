#!/usr/bin/env zsh
# offered.zsh FOLDER TEXT: what an interactive zsh, with the completion of FOLDER, offers for the command line TEXT in the
# current folder, one a line. Matches are told instead of shown.
zmodload zsh/zpty

setup=$(mktemp)
trap 'rm -f $setup' EXIT
cat >$setup <<'END'
tell() {
  compadd() {
    # Matches that a function wants for itself are left to it.
    if [[ ${@[1,(i)(-|--)]} = *-(O|A|D)\ * ]]; then
      builtin compadd "$@"
      return
    fi
    local -a matches
    builtin compadd -A matches "$@"
    (( $#matches )) && print -rl -- "offered "$^matches
    builtin compadd "$@"
  }
  print
  _main_complete
  print "told"
  exit
}
zle -C tell complete-word tell
unsetopt zle_bracketed_paste
bindkey "^I" tell
END

zpty shell zsh -f -i
zpty -w shell "PROMPT=; fpath=(${(q)1} \$fpath); autoload -Uz compinit; compinit -u -D; source $setup; print re''ady"
zpty -r shell output '*ready*'
zpty -w -n shell "$2"$'\t'
zpty -r shell output '*told*'
print -r -- $output | tr -d '\r' | sed -n 's/^offered //p' | sort -u
