#!/usr/bin/env bash
# hardening_test.sh PROGRAM...: checks that every program is position independent, binds all functions at its start
# into tables that are then read-only, has no executable stack, and was compiled with stack protectors and checked library
# calls.
set -euo pipefail
failed=0
expect() { # expect PROGRAM WHAT PATTERN TEXT
  grep -qE "$3" <<<"$4" || { echo "$1: $2" >&2; failed=1; }
}
for program in "$@"; do
  header=$(readelf -hlW "$program")
  dynamic=$(readelf -dW "$program")
  functions=$(readelf --dyn-syms -W "$program")
  expect "$program" "is not position independent" 'Type:.*DYN' "$header"
  expect "$program" "keeps its tables writable" 'GNU_RELRO' "$header"
  expect "$program" "binds functions when they are called" 'BIND_NOW|FLAGS_1.*NOW' "$dynamic"
  expect "$program" "has an executable stack" 'GNU_STACK.* RW ' "$header"
  expect "$program" "has no stack protector" '__stack_chk_fail' "$functions"
  expect "$program" "has no checked library calls" '__[a-z]+_chk@' "$functions"
  if grep -qE '(RPATH|RUNPATH)' <<<"$dynamic"; then echo "$program: looks for libraries in a folder of its own" >&2; failed=1; fi
done
exit "$failed"
