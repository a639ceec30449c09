#!/usr/bin/env bash
# script_arguments_test.sh CHECKOUT: what ./run and ./test refuse, before they install or build anything.
set -euo pipefail
checkout=$1
folder=$(mktemp -d)
trap 'rm -rf -- "$folder"' EXIT
mkdir "$folder/here"
cd "$folder"

# refuses TEXT SCRIPT ARGUMENT...: ends with status 2 and a message with TEXT.
refuses() {
  local text=$1 script=$2 message status=0
  shift 2
  message=$("$checkout/$script" "$@" 2>&1 </dev/null) || status=$?
  if [ "$status" -ne 2 ] || ! grep -qF -- "$text" <<<"$message"; then
    printf '%s\n' "./$script $* should be refused with '$text', but ended with status $status and said:" "$message" >&2
    exit 1
  fi
}

refuses "unknown argument 'full'" run full
refuses '--day needs a value' run --day
refuses "there is no sample day 'monday'" run --day monday
refuses '--service needs --token-stdin' run --service https://vamba.example.org/api
refuses '--calendar and --service name two days' run --calendar here --token-stdin --service https://vamba.example.org/api
refuses '--day is for the sample service alone' run --day full --calendar here
refuses '--day is for the sample service alone' run --token-stdin --service https://vamba.example.org/api --day=busy

# A folder is one of the folder that the command was started in: the checkout has docs/, this one has not.
refuses "there is no folder '$folder/docs'" run --calendar docs --calendar nowhere
refuses "there is no folder '$folder/nowhere'" run --calendar here --calendar="$folder/here" --calendar nowhere
refuses "there is no folder ''" run --calendar=

refuses 'usage: ./test' test --slow
refuses 'usage: ./test' test --help --quick
