#!/bin/bash
# usage: check_manual.sh QEL MANUAL_FOLDER
# Every command and option that `qel ... --help` prints is in the manual page and completed by the scripts of bash,
# zsh and fish (those that are installed).
set -u
qel=$1; manual=$2; status=0
fail() { echo "$1"; status=1; }
source "$manual/qel.bash"

# What each shell offers after the words of a line, the last of which is being written; one a line.
in_bash() { COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); COMPREPLY=(); _qel; printf '%s\n' "${COMPREPLY[@]}"; }
in_fish() { fish --no-config -c "source $manual/qel.fish; complete -C '$*'" | cut -f1; }
in_zsh() {  # with the completion system's functions replaced by ones that print
  zsh -f -c '
    compdef() { :; }
    compadd() { shift; print -l -- $@; }
    _files() { :; }
    _describe() { print -l -- ${entries%%:*}; }
    source '"$manual"'/qel.zsh
    words=("$@"); CURRENT=$#; _qel' zsh "$@"
}
shells=bash
for shell in zsh fish; do command -v $shell > /dev/null && shells="$shells $shell"; done

# has NAME LIST MESSAGE
has() { grep -qxF -- "$1" <<< "$2" || fail "$3: $1"; }

# look COMMAND_WORDS...: this command and all below it
look() {
  local help page text options commands option command shell offered
  help=$("$qel" "${@:2}" --help)
  options=$(sed -n '/^Options:/,/^$/p' <<< "$help" | grep -oE '^ +-[^ ]+' | tr -d ' ' | tr , '\n')
  # under headings of any name
  commands=$(awk '/^[A-Z].*:$/ {heading = $0} /^$/ {heading = ""}
                  /^  [a-z]/ && heading != "" && heading !~ /^(Positionals|Options):/ {print $1}' <<< "$help")
  [ -n "$options" ] || fail "$*: no options in the help"
  page=$manual/qel${2:+-$2}.1
  text=$(sed -e 's/\\f[BIR]//g' -e 's/\\-/-/g' "$page" | tr -s ', ' '\n')
  for option in $options; do has "$option" "$text" "$page lacks"; done
  for shell in $shells; do
    offered=$(in_$shell "$@" -; [ $shell != fish ] || in_fish "$@" --)
    for option in $options; do has "$option" "$offered" "$shell after $*"; done
    offered=$(in_$shell "$@" "")
    for command in $commands; do has "$command" "$offered" "$shell after $*"; done
  done
  for command in $commands; do
    has "$command" "$text" "$page lacks"
    count=$((count + 1))
    look "$@" "$command"
  done
}
count=1
look qel
[ $count -ge 30 ] || fail "only $count commands found"

for shell in $shells; do
  [ "$(in_$shell qel --completion "" | sort | tr '\n' ' ')" = "bash fish zsh " ] || fail "$shell: choices of --completion"
  cmp -s <("$qel" --completion $shell) "$manual/qel.$shell" || fail "qel --completion $shell differs"
done
[ -z "$(in_bash qel solve "")" ] || fail "bash offers options where a file belongs"
if command -v mandoc > /dev/null; then mandoc -T lint -W error "$manual"/*.1 || status=1; fi
echo "$count commands; shells: $shells"
exit $status
