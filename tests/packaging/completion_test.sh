#!/usr/bin/env bash
# completion_test.sh SHELL COMPLETIONS BIN: types the start of a command line in that shell and checks what it offers.
set -euo pipefail
shell=$1
completions=$2
export PATH=$3:$PATH
command -v "$shell" >/dev/null || { echo "this test needs $shell: apt-get install $shell" >&2; exit 1; }
private=$(mktemp -d)
trap 'rm -rf -- "$private"' EXIT
export HOME=$private XDG_CONFIG_HOME=$private XDG_DATA_HOME=$private
cd "$private"
: >entry.json

# offers LINE WORD...: the last word of the line can become these, in any order.
offers() {
  local line=$1 got
  shift
  got=$("offered_by_$shell" "$line" | sort | tr '\n' ' ')
  [ "$got" = "$(printf '%s\n' "$@" | sort | tr '\n' ' ')" ] || { echo "\"$line\" offers: $got; not: $*" >&2; exit 1; }
}

offered_by_bash() {
  bash --norc -c '
    source "$1"
    before=sh  # a variable of the shell itself
    # As bash itself splits a line: at blanks, and "=" is a word of its own.
    read -ra COMP_WORDS <<<"${2//=/ = }"
    [[ $2 == *[" ="] ]] && COMP_WORDS+=("")
    COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
    _vamba_host
    ((${#COMPREPLY[@]} == 0)) || printf "%s\n" "${COMPREPLY[@]}"' - "$completions/vamba-host.bash" "$1"
}

offered_by_fish() {
  fish --no-config -c 'source $argv[1]; complete -C $argv[2]' "$completions/vamba-host.fish" "$1" | cut -f1
}

# What the Tab key makes of the line: a real zsh on a terminal of its own, which writes down what it would run.
completed_by_zsh() {
  zsh -f -c '
    zmodload zsh/zpty
    zpty shell zsh -f -i
    zpty -w shell "fpath=($1 \$fpath); autoload -U compinit; compinit -u -D"
    zpty -w shell "preexec() { print -r -- \$1 >$3; exit }"
    zpty -w shell "$2$4"
    while zpty -r shell ignored; do :; done' - "$completions" "$1" "$private/line" $'\t' >/dev/null 2>&1 || true
  cat "$private/line"
}

completes() {
  local got
  got=$(completed_by_zsh "$1")
  [ "$got" = "$2" ] || { echo "\"$1\" becomes \"$got\", not \"$2\"" >&2; exit 1; }
}

if [ "$shell" = zsh ]; then
  completes 'vamba-host sh' 'vamba-host show'
  completes 'vamba-host show --fam' 'vamba-host show --family'
  completes 'vamba-host show --family sm' 'vamba-host show --family small'
  completes 'vamba-host show --family=l' 'vamba-host show --family=large'
  completes 'vamba-host show --entry pre' 'vamba-host show --entry preview'
  completes 'vamba-host show --entry ent' 'vamba-host show --entry entry.json'
  completes 'vamba-host show --entry=ent' 'vamba-host show --entry=entry.json'
  completes 'vamba-host watch --format w' 'vamba-host watch --format waybar'
  exit 0
fi

offers 'vamba-host sh' show
offers 'vamba-host show --fam' --family
offers 'vamba-host show --family ' small medium large
offers 'vamba-host show --entry p' preview placeholder
offers 'vamba-host show --entry ent' entry.json
offers 'vamba-host autostart o' on off
offers 'vamba-host watch --format w' waybar
# bash offers what follows the "=", fish the whole word.
case $shell in
  bash)
    offers 'vamba-host show --family=l' large
    offers 'vamba-host show --entry=ent' entry.json
    ;;
  fish)
    offers 'vamba-host show --family=l' --family=large
    offers 'vamba-host show --entry=ent' --entry=entry.json
    ;;
esac
