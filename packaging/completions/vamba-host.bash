# Completion of vamba-host for bash. It asks the program itself for the candidates.
_vamba_host() {
  local word line joined='' words=() offered=()
  # bash splits words at "=": --family=small arrives as three words.
  for word in "${COMP_WORDS[@]:1:COMP_CWORD}"; do
    if [[ $word == '=' && ${#words[@]} -gt 0 ]]; then
      words[-1]+='='
      joined=yes
    elif [[ -n $joined ]]; then
      words[-1]+=$word
      joined=''
    else
      words+=("$word")
    fi
  done
  local current=${words[-1]-} before=''
  [[ $current == --*=* ]] && before=${current%%=*}=
  COMPREPLY=()
  mapfile -t offered < <("${COMP_WORDS[0]}" --complete "${words[@]}" 2>/dev/null)
  for line in "${offered[@]}"; do
    if [[ $line == ':files' ]]; then
      compopt -o filenames 2>/dev/null
      mapfile -t -O "${#COMPREPLY[@]}" COMPREPLY < <(compgen -f -- "${current#"$before"}")
    else
      line=${line%%$'\t'*}
      COMPREPLY+=("${line#"$before"}")
    fi
  done
}
complete -F _vamba_host vamba-host
