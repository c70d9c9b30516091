#!/usr/bin/env bash
# agree.sh PROGRAM PAGES [COMMAND...]: what --help lists is what the manual page has and what the shells propose, for each
# command that the program has. PAGES is the folder with man/, bash/, zsh/ and fish/.
set -euo pipefail
program=$(realpath "$1")
pages=$2
name=${program##*/}
shift 2
failed=0

# The options that a help lists, as they are typed, one a line.
listed() {
  "$program" ${1:+"$1"} --help |
    sed -nE 's/^  (-.), --([a-z-]+).*/\1\n--\2/p; s/^      --([a-z-]+).*/--\1/p' | sort
}

# same WHAT: whether standard input has the options that are listed.
same() {
  local difference
  difference=$(diff <(printf '%s\n' "$expected") <(sort -u)) && return
  printf '%s, beside --help:\n%s\n' "$1" "$difference"
  return 1
}

# What bash proposes for an option after the command.
in_bash() {
  bash -c '
    source /usr/share/bash-completion/bash_completion
    source "$1"
    COMP_WORDS=("${@:2}" -)
    COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
    COMP_LINE="${COMP_WORDS[*]}"
    COMP_POINT=${#COMP_LINE}
    "_${2//-/_}"
    printf "%s\n" "${COMPREPLY[@]}"' bash "$pages/bash/$name" "$name" "$@"
}

# What zsh is told: the function that would propose it is ours here.
in_zsh() {
  zsh -fc '
    _arguments() { print -rl -- "$@" }
    file=$1
    shift
    words=("$@" -)
    CURRENT=${#words}
    source $file' zsh "$pages/zsh/_$name" "$name" "$@" |
    sed -nE 's/^(\([^)]*\))?(--?[a-zA-Z0-9-]*[a-zA-Z0-9])[=+-]*\[.*/\2/p'
}

in_fish() {
  local line="$name${1:+ $1} "
  fish --no-config -c 'source $argv[1]; complete -C "$argv[2]-"; complete -C "$argv[2]--"' "$pages/fish/$name.fish" "$line" |
    sed -E 's/[[:space:]].*//' | grep -E '^(-.|--.+)$'
}

for command in "" "$@"; do
  # The saved request is a command of its own, which has the options.
  expected=$(listed "${command##* }")
  if (($(wc -l <<<"$expected") < 4)); then
    echo "'$name $command --help' lists hardly any option"
    failed=1
  fi
  # shellcheck disable=SC2086 # words
  in_bash $command | same "bash, $name $command" || failed=1
  # shellcheck disable=SC2086
  in_zsh $command | same "zsh, $name $command" || failed=1
  in_fish "$command" | same "fish, $name $command" || failed=1
done

expected=$(listed "")
sed -n '/^\.SH OPTIONS/,/^\.SH [^O]/p' "$pages/man/$name.1" | grep -A1 '^\.TP' | grep -oE '\\fB\\-[^\\]*(\\-[^\\]*)*\\fR' |
  sed 's/\\f[BR]//g; s/\\-/-/g' | same "the manual page of $name" || failed=1
exit "$failed"
