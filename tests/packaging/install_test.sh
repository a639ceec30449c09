#!/usr/bin/env bash
# install_test.sh BUILD: installs the build into an empty folder and runs the installed programs.
set -euo pipefail
build=$1
place=$(mktemp -d)
trap 'rm -rf -- "$place"' EXIT

cmake --install "$build" --prefix "$place/usr" >/dev/null

for file in bin/vamba-host libexec/vamba/vamba-widzety libexec/vamba/vamba-picture \
  libexec/vamba/vamba-desktop share/applications/pl.ferol.vamba.Desktop.desktop \
  share/icons/hicolor/scalable/apps/pl.ferol.vamba.Desktop.svg \
  share/icons/hicolor/symbolic/apps/pl.ferol.vamba.Desktop-symbolic.svg share/metainfo/pl.ferol.vamba.Desktop.metainfo.xml \
  share/man/man1/vamba-host.1.gz share/doc/vamba-widget/docs/protocol.schema.json \
  share/doc/vamba-widget/docs/pictures/medium-light.png share/doc/vamba-widget/examples/status-bars/waybar.jsonc; do
  [ -s "$place/usr/$file" ] || { echo "not installed: $file" >&2; exit 1; }
done
if find "$place" -name 'vamba-sample-service' | grep -q .; then
  echo "the sample service was installed" >&2
  exit 1
fi

# Without --extension: the installed host finds the installed extension, wherever both were put.
gallery=$(LANGUAGE=pl "$place/usr/bin/vamba-host" gallery)
grep -qF 'Vamba — spotkania i zadania' <<<"$gallery" || { echo "gallery said: $gallery" >&2; exit 1; }
board=$(LANGUAGE=pl "$place/usr/bin/vamba-host" show --entry preview)
grep -qF 'Narada zespołu' <<<"$board" || { echo "show said: $board" >&2; exit 1; }
picture=$(LANGUAGE=pl "$place/usr/bin/vamba-host" show --entry preview --format svg)
grep -qF 'Narada zespołu' <<<"$picture" || { echo "show as a picture said: $picture" >&2; exit 1; }

# The host becomes the desktop's program, which finds no display here.
said=$(env -u DISPLAY -u WAYLAND_DISPLAY "$place/usr/bin/vamba-host" desktop 2>&1) && { echo "a desktop without a display" >&2; exit 1; }
grep -qF 'no display is reachable' <<<"$said" || { echo "desktop said: $said" >&2; exit 1; }
