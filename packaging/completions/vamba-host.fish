# Completion of vamba-host for fish.
set -l commands gallery placeholder snapshot timeline show watch desktop autostart

complete -c vamba-host -f
complete -c vamba-host -l help -d 'Tell how to use it'
complete -c vamba-host -n "not __fish_seen_subcommand_from $commands" -l version -d 'Tell the version'
complete -c vamba-host -n "not __fish_seen_subcommand_from $commands" -l extension -r -F -d 'The extension program'
complete -c vamba-host -n "not __fish_seen_subcommand_from $commands" -a gallery -d 'The widgets on offer'
complete -c vamba-host -n "not __fish_seen_subcommand_from $commands" -a placeholder -d 'A placeholder entry as JSON'
complete -c vamba-host -n "not __fish_seen_subcommand_from $commands" -a snapshot -d 'A snapshot entry as JSON'
complete -c vamba-host -n "not __fish_seen_subcommand_from $commands" -a timeline -d 'A timeline as JSON'
complete -c vamba-host -n "not __fish_seen_subcommand_from $commands" -a show -d 'One board, once'
complete -c vamba-host -n "not __fish_seen_subcommand_from $commands" -a watch -d 'The board, kept current'
complete -c vamba-host -n "not __fish_seen_subcommand_from $commands" -a desktop -d 'The widgets on the desktop'
complete -c vamba-host -n "not __fish_seen_subcommand_from $commands" -a autostart -d 'Whether the widgets come up with your session'

complete -c vamba-host -n '__fish_seen_subcommand_from autostart' -a 'on off status' -d 'Have it so, or not, or tell'
complete -c vamba-host -n '__fish_seen_subcommand_from gallery' -l json -d 'As JSON'
complete -c vamba-host -n '__fish_seen_subcommand_from snapshot' -l preview -d 'The sample of the gallery'
complete -c vamba-host -n '__fish_seen_subcommand_from placeholder snapshot timeline show watch' -l family -x -a 'small medium large' -d 'The size'
complete -c vamba-host -n '__fish_seen_subcommand_from show' -l entry -r -a 'timeline snapshot preview placeholder -' -d 'What to show'
complete -c vamba-host -n '__fish_seen_subcommand_from show' -l format -x -a 'text json svg png pdf' -d 'The form'
complete -c vamba-host -n '__fish_seen_subcommand_from watch' -l format -x -a 'text json waybar' -d 'The form'
complete -c vamba-host -n '__fish_seen_subcommand_from show' -l output -r -F -d 'Where to write'
complete -c vamba-host -n '__fish_seen_subcommand_from show' -l scale -x -d 'Pixels a point'
complete -c vamba-host -n '__fish_seen_subcommand_from show' -l appearance -x -a 'light dark' -d 'Colours'
complete -c vamba-host -n '__fish_seen_subcommand_from show' -l outlines -d 'Letters of an SVG as outlines'
complete -c vamba-host -n '__fish_seen_subcommand_from desktop' -l verbose -d 'Say how windows are shown'
complete -c vamba-host -n '__fish_seen_subcommand_from desktop' -l part-of-desktop -d 'On X11: stay when the desktop is shown'
