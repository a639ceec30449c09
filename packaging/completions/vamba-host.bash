# Completion of vamba-host for bash.
_vamba_host() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} word command=
  for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
    case "$word" in gallery | placeholder | snapshot | timeline | show | watch | desktop | autostart) command=$word ;; esac
  done
  local words
  case "$previous" in
    --family) words='small medium large' ;;
    --format) if [ "$command" = watch ]; then words='text json waybar'; else words='text json svg png pdf'; fi ;;
    --appearance) words='light dark' ;;
    --extension | --output)
      mapfile -t COMPREPLY < <(compgen -f -- "$current")
      return
      ;;
    --entry)
      mapfile -t COMPREPLY < <(compgen -f -W 'timeline snapshot preview placeholder -' -- "$current")
      return
      ;;
    --scale) return ;;
    *)
      case "$command" in
        '') words='gallery placeholder snapshot timeline show watch desktop autostart --extension --help --version' ;;
        gallery) words='--json --help' ;;
        snapshot) words='--preview --family --help' ;;
        placeholder | timeline) words='--family --help' ;;
        show) words='--family --entry --format --output --scale --appearance --outlines --help' ;;
        watch) words='--family --format --help' ;;
        desktop) words='--verbose --part-of-desktop --help' ;;
        autostart) words='on off status --help' ;;
        *) words='--help' ;;
      esac
      ;;
  esac
  mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
}
complete -o filenames -F _vamba_host vamba-host
