#!/usr/bin/env bash
# desktop_files_test.sh SOURCES BUILT: checks the desktop entry and the metadata with the desktops' own validators.
set -euo pipefail
desktop-file-validate "$1/pl.ferol.vamba.Desktop.desktop"
appstreamcli validate --no-net "$2/pl.ferol.vamba.Desktop.metainfo.xml"
for icon in pl.ferol.vamba.Desktop pl.ferol.vamba.Desktop-symbolic; do
  picture=$(rsvg-convert --width 64 "$1/$icon.svg" | wc -c)
  [ "$picture" -gt 200 ] || { echo "$icon.svg cannot be drawn" >&2; exit 1; }
done
