# The day in front of a bash prompt. A background job refreshes it every 15 minutes at most, and tries again a minute
# after a failure. The prompt never waits for it.
vamba_prompt() {
  [[ -d ${XDG_RUNTIME_DIR-} ]] || return 0
  local file=$XDG_RUNTIME_DIR/vamba-prompt
  if [[ -z $(find "$file" -newermt '-15 minutes' 2>/dev/null) ]]; then
    # The new date keeps the next prompt from starting another job. A job that kept the prompt's pipe open would delay it.
    (
      umask 077
      touch "$file"
      if vamba-host show --format line >"$file.new"; then
        mv "$file.new" "$file"
      else
        touch -d '14 minutes ago' "$file"
      fi &
    ) >/dev/null 2>&1
  fi
  cat "$file" 2>/dev/null
}
PS1='$(vamba_prompt)\n'$PS1
