# Completion of the words of tolvane and tolvane-preview for bash.

# _tolvane_files EXTENSION: offers the files of that extension, and folders; any file where there are none.
_tolvane_files() {
  compopt -o filenames -o default
  mapfile -t COMPREPLY < <(compgen -o plusdirs -f -X "!*.$1" -- "${COMP_WORDS[COMP_CWORD]}")
}

# _tolvane_words WORD...: offers those words.
_tolvane_words() {
  mapfile -t COMPREPLY < <(compgen -W "$*" -- "$current")
}

_tolvane() {
  local current=${COMP_WORDS[COMP_CWORD]}
  COMPREPLY=()
  case $COMP_CWORD,${COMP_WORDS[1]} in
    1,*) _tolvane_words update merge setparameter fdbms install ;;
    2,update | 2,merge | 2,setparameter | 2,fdbms | 2,install) _tolvane_files qpx ;;
    3,merge | 4,merge) _tolvane_files def ;;
  esac
}

# The first word that is neither an option nor the value of one.
_tolvane_first_operand() {
  local word before=
  for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
    case $before,$word in
      *,-* | --color,* | =,*) ;;
      *)
        echo "$word"
        return
        ;;
    esac
    before=$word
  done
}

_tolvane_preview() {
  local current=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} operand
  COMPREPLY=()
  # Where "=" breaks words it is one itself.
  [ "$before" != = ] || before=${COMP_WORDS[COMP_CWORD - 2]}
  [ "$current" != = ] || current=
  operand=$(_tolvane_first_operand)
  case $before,$current in
    --color,*) _tolvane_words auto always never ;;
    *,--color=*) _tolvane_words --color=auto --color=always --color=never ;;
    *,-*)
      _tolvane_words --diff --json --summary --color= --help --version
      [ "${COMPREPLY[*]}" != --color= ] || compopt -o nospace
      ;;
    *)
      if [ "$operand" = merge ]; then
        _tolvane_files def
      else
        _tolvane_files qpx
        [ -n "$operand" ] || [[ merge != "$current"* ]] || COMPREPLY+=(merge)
      fi
      ;;
  esac
}

complete -F _tolvane tolvane
complete -F _tolvane_preview tolvane-preview
