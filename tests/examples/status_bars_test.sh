#!/usr/bin/env bash
# status_bars_test.sh EXAMPLES BIN: runs the examples with the real bars and the real widget, signed out.
set -euo pipefail
examples=$1
export PATH=$2:$PATH
private=$(mktemp -d)
clean_up() {
  local bar
  for bar in "vamba-$$" "vamba-titled-$$"; do tmux -L "$bar" kill-server 2>/dev/null || true; done
  rm -rf -- "$private"
}
trap clean_up EXIT
export HOME=$private XDG_RUNTIME_DIR=$private VAMBA_KEYCHAIN_DIR=$private/keys LANGUAGE=en LC_ALL=C.UTF-8 TMUX_TMPDIR=$private
unset TMUX DISPLAY WAYLAND_DISPLAY DBUS_SESSION_BUS_ADDRESS
line='Sign in to the Vamba app.'

needs() {
  command -v "$1" >/dev/null || { echo "this test needs $1: apt-get install $2" >&2; exit 1; }
}
# shows NAME TEXT: the bar's output holds the line.
shows() {
  grep -qF "$line" <<<"$2" || { echo "$1 shows: $2" >&2; exit 1; }
}
# Until the command writes the line; a minute at most.
eventually() {
  local name=$1 output=''
  shift
  for ((tries = 0; tries < 600; ++tries)); do
    output=$("$@" 2>&1) || true
    grep -qF "$line" <<<"$output" && return
    sleep 0.1
  done
  echo "$name shows: $output" >&2
  exit 1
}

needs python3 python3
shows waybar "$(python3 - "$examples/waybar.jsonc" <<'PYTHON'
import json, subprocess, sys
module = json.load(open(sys.argv[1]))["custom/vamba"]
assert module["return-type"] == "json" and module["escape"] is False
bar = subprocess.Popen(module["exec"], shell=True, stdout=subprocess.PIPE, text=True)
state = json.loads(bar.stdout.readline())
assert state["class"] == ["error"], state
bar.stdout.close()
assert bar.wait() == 0, "watch ends with its bar"
print(state["text"])
PYTHON
)"

needs i3blocks i3blocks
mkfifo "$private/blocks"
i3blocks -c "$examples/i3blocks.conf" >"$private/blocks" 2>&1 &
blocks=$!
shows i3blocks "$(grep -m 1 -F "$line" <"$private/blocks")"
kill "$blocks" 2>/dev/null || true

needs tmux tmux
# On a terminal of its own: only an attached client has a status line.
export server=vamba-$$ configuration=$examples/tmux.conf
start_tmux() {
  script -qfc 'stty cols 200 rows 24; TERM=xterm exec tmux -L "$server" -f "$configuration" new-session "sleep 1000"' \
    "$1" >/dev/null 2>&1 </dev/null &
}
start_tmux "$private/terminal"
eventually tmux cat "$private/terminal"
# A title is no format.
mkdir "$private/titled"
printf '#!/bin/sh\necho "09:00 C# #S #{version} #[fg=red]Narada"\n' >"$private/titled/vamba-host"
chmod +x "$private/titled/vamba-host"
server=vamba-titled-$$ PATH=$private/titled:$PATH start_tmux "$private/titled/terminal"
line='09:00 C# #S #{version} #[fg=red]Narada' eventually tmux cat "$private/titled/terminal"

needs conky conky-std
mkfifo "$private/conky"
conky -c "$examples/conky.conf" >"$private/conky" 2>/dev/null &
conky=$!
shows conky "$(grep -m 1 -F "$line" <"$private/conky")"
kill "$conky" 2>/dev/null || true

prompt() { bash --norc -c 'PS1=; source "$1"; vamba_prompt' - "$examples/prompt.bash"; }
eventually prompt prompt

# A host that answers when the test says so, with the status that the test says.
mkdir "$private/slow"
mkfifo "$private/answer"
cat >"$private/slow/vamba-host" <<STUB
#!/bin/sh
echo started >>"$private/starts"
read -r status text <"$private/answer"
echo "\$text"
exit "\$status"
STUB
chmod +x "$private/slow/vamba-host"
file=$private/vamba-prompt
slow_prompt() { PATH=$private/slow:$PATH prompt; }
untouched_for() { [[ -n $(find "$file" ! -newermt "-$1 minutes") ]] && echo "$line"; }

rm "$file"
for _ in 1 2; do
  shown=$(slow_prompt)
  [[ -z $shown ]] || { echo "the first prompt shows: $shown" >&2; exit 1; }
done
echo '0 09:00 Narada' >"$private/answer"
line='09:00 Narada' eventually prompt slow_prompt
[[ $(wc -l <"$private/starts") == 1 ]] || { echo 'two prompts start two hosts' >&2; exit 1; }

# After a failure it keeps what it showed, and tries again sooner.
touch -d '20 minutes ago' "$file"
slow_prompt >/dev/null
echo '1 nothing' >"$private/answer"
eventually 'the file after a failure' untouched_for 13
line='09:00 Narada' shows prompt "$(slow_prompt)"
