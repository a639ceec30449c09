#!/usr/bin/env bash
# rebuild_test.sh SOURCE BUILD: builds the programs once more, from a copy of the sources in another folder, at another
# time and without a compiler cache. What that installs and packs must be the same, byte for byte.
set -euo pipefail
source=$1
build=$2
place=$(mktemp -d)
trap 'rm -rf -- "$place"' EXIT
again=$place/copied/to/another/folder
mkdir -p "$again"
tar -C "$source" --exclude=./build --exclude=./.git -cf - . | tar -C "$again" -xf -

cached() { sed -n "s/^$1:[A-Z]*=//p" "$build/CMakeCache.txt"; }
type=$(cached CMAKE_BUILD_TYPE)
flags=CMAKE_CXX_FLAGS_${type^^}
export CCACHE_DISABLE=1 SOURCE_DATE_EPOCH=1700000000
quietly() { "$@" >"$place/log" 2>&1 || { tail -n 40 "$place/log" >&2; exit 1; }; }
quietly cmake -S "$again" -B "$again/second build" -G Ninja "-DCMAKE_BUILD_TYPE=$type" "-D$flags=$(cached "$flags")" \
  -DBUILD_TESTING=OFF
(umask 077 && TZ=Pacific/Auckland quietly cmake --build "$again/second build")

for each in "$build" "$again/second build"; do
  name=$(basename "$each")
  quietly cmake --install "$each" --prefix "$place/installed/$name"
  (cd "$each" && quietly cpack -B "$place/packed/$name")
done
first=$(basename "$build")
listing() { (cd "$1" && find . -printf '%M %p %l\n' | LC_ALL=C sort); }
diff <(listing "$place/installed/$first") <(listing "$place/installed/second build")
diff -r "$place/installed/$first" "$place/installed/second build"
for package in "$place/packed/$first"/*.deb; do
  cmp "$package" "$place/packed/second build/$(basename "$package")"
done
[ -x "$place/installed/$first/bin/vamba-host" ] || { echo "nothing was compared" >&2; exit 1; }
