# The day in front of a bash prompt. It is asked for in the background, every 15 minutes at most: no prompt waits for it.
vamba_prompt() {
  local file=${XDG_RUNTIME_DIR:-/tmp}/vamba-prompt-$UID
  if [[ -z $(find "$file" -newermt '-15 minutes' 2>/dev/null) ]]; then
    (umask 077 && vamba-host show --format line >"$file.new" 2>/dev/null && mv "$file.new" "$file" &)
  fi
  cat "$file" 2>/dev/null
}
PS1='$(vamba_prompt)\n'$PS1
