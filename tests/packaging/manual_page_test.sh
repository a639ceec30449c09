#!/usr/bin/env bash
# manual_page_test.sh PAGE HOST: the page is well formed, and its options are those that the program's help tells.
set -euo pipefail
page=$1
host=$2

warnings=$(groff -man -Tutf8 -ww -z "$page" 2>&1)
[ -z "$warnings" ] || { printf '%s\n' "$warnings" >&2; exit 1; }

faults=$(mandoc -T lint -W style "${page%/*}"/*.[17] 2>&1 || true)
[ -z "$faults" ] || { printf '%s\n' "$faults" >&2; exit 1; }

options_in() { grep -oE -- '--[a-z]+[a-z-]*' | sort -u; }
told=$(for command in '' gallery placeholder snapshot timeline show watch desktop sign-in sign-out doctor autostart help; do "$host" $command --help; done | options_in)
# The page writes a hyphen of an option as \-.
documented=$(sed 's/\\-/-/g' "$page" | options_in)
diff <(printf '%s\n' "$told") <(printf '%s\n' "$documented") >&2 ||
  { echo "the help (<) and the manual page (>) tell different options" >&2; exit 1; }
