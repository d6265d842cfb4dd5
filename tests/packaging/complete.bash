# complete.bash SCRIPT WORD...: what is offered for the last word, one a line. The words are those that readline would
# find in the line, so --type=gray comes as three.
source /usr/share/bash-completion/bash_completion || exit 1
source "$1" || exit 1
shift
COMP_WORDS=("$@")
COMP_CWORD=$(($# - 1))
COMP_LINE="$*"
COMP_LINE=${COMP_LINE// = /=}
COMP_POINT=${#COMP_LINE}
COMPREPLY=()
compopt() { :; } # only readline has options to set
_zelviewer
((${#COMPREPLY[@]} == 0)) || printf '%s\n' "${COMPREPLY[@]}"
