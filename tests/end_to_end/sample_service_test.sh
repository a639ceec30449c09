#!/usr/bin/env bash
# sample_service_test.sh BIN: the three programs together, as a person runs them.
set -euo pipefail
bin=$1
private=$(mktemp -d)
trap 'rm -rf -- "$private"' EXIT
item_folder=$private/QX4R2M7K9A.pl.ferol.vamba/pl.ferol.vamba
(umask 077 && mkdir -p "$item_folder")
export VAMBA_KEYCHAIN_DIR=$private LANGUAGE=pl TZ=Europe/Warsaw no_proxy=127.0.0.1

wrong() {
  printf '%s\n' "$1, but the board was:" "$board" >&2
  exit 1
}
shows() { grep -qF -- "$1" <<<"$board" || wrong "the board should show '$1'"; }
hides() { ! grep -qF -- "$1" <<<"$board" || wrong "the board should not show '$1'"; }

# with_service OPTIONS... -- FAMILY: the board of a fresh sample service with these options, as $board.
with_service() {
  local options=() address token
  while [ "$1" != -- ]; do
    options+=("$1")
    shift
  done
  coproc SAMPLE { exec "$bin/vamba-sample-service" "${options[@]}" --until-input-ends; }
  local pid=$SAMPLE_PID
  { read -r address && read -r token; } <&"${SAMPLE[0]}"
  (umask 077 && printf %s "$token" >"$item_folder/token-urzadzenia" && printf %s "$address" >"$item_folder/adres-api")
  board=$("$bin/vamba-host" show --family "$2")
  kill "$pid"
  wait "$pid" 2>/dev/null || true
}

with_service -- large
shows 'Vamba'
shows '4 do decyzji'
shows 'Narada redakcyjna'
shows 'Konsultacje ze studentami'
shows '#41'
shows 'Oddać rozliczenie delegacji'
shows 'zaległe'
shows 'i 3 więcej' # one meeting and two tasks
for left_out in 'Przegląd poczty' 'Seminarium zespołu' 'Opłacić domenę' 'Zamówić poczęstunek' 'Sprawdzić prace'; do
  hides "$left_out"
done

with_service -- small
shows 'Narada redakcyjna'
hides 'Konsultacje ze studentami'
shows 'i 6 więcej'

with_service --day empty -- medium
shows 'Nic na dziś.'
hides 'do decyzji'

with_service --fault server-error -- medium
shows 'Serwer odpowiedział błędem 500.'

with_service --fault malformed -- medium
shows 'Nie udało się odświeżyć.'

with_service --fault unauthorized -- medium
# The second sentence, where the first request to be refused removed the token before the tasks' request read it.
grep -qE 'Poświadczenie wygasło — zaloguj się ponownie\.|Zaloguj się w aplikacji Vamba\.' <<<"$board" ||
  wrong "the board should ask to sign in"
[ ! -e "$item_folder/token-urzadzenia" ] || wrong "a refused token should be deleted"
[ -e "$item_folder/adres-api" ] || wrong "the address should be kept"
board=$("$bin/vamba-host" show)
shows 'Zaloguj się w aplikacji Vamba.'
