#!/usr/bin/env bash
# desktop_files_test.sh SOURCES METAINFO...: checks the desktop entry and the metadata with the desktops' own validators.
set -euo pipefail
sources=$1
shift
desktop-file-validate "$sources/pl.ferol.vamba.Desktop.desktop"
for metainfo; do appstreamcli validate --no-net "$metainfo"; done
# Each screenshot is one of the pictures that scripts/pictures draws.
screenshots=$(sed -n 's|.*<image>.*/\([^/]*\)</image>.*|\1|p' "$@")
[ -n "$screenshots" ] || { echo "the metadata has no screenshots" >&2; exit 1; }
for picture in $screenshots; do
  [ -s "$sources/../docs/pictures/$picture" ] || { echo "no picture $picture" >&2; exit 1; }
done
for icon in pl.ferol.vamba.Desktop pl.ferol.vamba.Desktop-symbolic; do
  picture=$(rsvg-convert --width 64 "$sources/$icon.svg" | wc -c)
  [ "$picture" -gt 200 ] || { echo "$icon.svg cannot be drawn" >&2; exit 1; }
done
