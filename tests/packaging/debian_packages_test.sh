#!/usr/bin/env bash
# debian_packages_test.sh BUILD: makes the Debian packages, checks them with lintian, unpacks them and runs the programs.
set -euo pipefail
build=$1
place=$(mktemp -d)
trap 'rm -rf -- "$place"' EXIT

# In a folder of its own: other tests install from the build folder at the same time.
(cd "$build" && cpack -B "$place" >"$place/cpack.log" 2>&1) || { cat "$place/cpack.log" >&2; exit 1; }
packages=("$place"/vamba-widget_*.deb "$place"/vamba-widget-desktop_*.deb)
for package in "${packages[@]}"; do [ -s "$package" ] || { ls "$place" >&2; exit 1; }; done

# The command of the desktop entry is in the package that the desktop's one depends on.
lintian --allow-root --fail-on error,warning --suppress-tags desktop-command-not-in-package "${packages[@]}"

depends=$(dpkg-deb -f "${packages[0]}" Depends)
for library in libcurl4 libsimdjson tzdata; do
  grep -q "$library" <<<"$depends" || { echo "vamba-widget does not depend on $library: $depends" >&2; exit 1; }
done
if grep -q libgtk <<<"$depends"; then echo "vamba-widget needs GTK: $depends" >&2; exit 1; fi
grep -q libgtk-3 <<<"$(dpkg-deb -f "${packages[1]}" Depends)" || { echo "the desktop does not depend on GTK" >&2; exit 1; }

for package in "${packages[@]}"; do dpkg-deb -x "$package" "$place/root"; done
board=$(LANGUAGE=pl "$place/root/usr/bin/vamba-host" show --entry preview)
grep -qF 'Narada zespołu' <<<"$board" || { echo "show said: $board" >&2; exit 1; }
# The completion is where Debian's zsh looks for it.
completion=$(zsh -f -c 'for folder in $fpath; do if [[ -s $1$folder/_vamba-host ]]; then print $folder; fi; done' - "$place/root")
[ -n "$completion" ] || { echo "zsh does not find its completion" >&2; exit 1; }
if find "$place/root" -type f -exec grep -lF "$build" {} + | grep .; then
  echo "these files name the folder that they were built in" >&2
  exit 1
fi
