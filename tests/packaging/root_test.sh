#!/usr/bin/env bash
# root_test.sh BUILD: the Debian packages in a fresh Debian 12: installed, run as an ordinary user, upgraded and purged.
# Ends with 77, which ctest counts as skipped, and says why, where such a root cannot be made.
set -euo pipefail
build=$1
skip() {
  echo "skipped: $*"
  exit 77
}
fail() {
  echo "$*" >&2
  exit 1
}
[ "$(id -u)" -eq 0 ] || skip "only root can make a root"
command -v debootstrap >/dev/null || fail "this test needs debootstrap: apt-get install debootstrap"
# In a mount namespace of its own, so that nothing stays mounted.
if [ -z "${VAMBA_ROOT_TEST_INSIDE:-}" ]; then
  unshare --mount true 2>/dev/null || skip "this machine makes no mount namespaces"
  VAMBA_ROOT_TEST_INSIDE=yes exec unshare --mount --propagation private -- bash "$0" "$@"
fi

place=$(mktemp -d)
# Without what is mounted: the namespace is still there.
trap 'umount -R "$place/root/proc" 2>/dev/null || true; rm -rf --one-file-system -- "$place"' EXIT
root=$place/root
mirror=$(apt-get indextargets --format '$(REPO_URI)' 'Codename: bookworm' 2>/dev/null | grep -m 1 -v security || true)
timeout 600 debootstrap --variant=minbase bookworm "$root" "${mirror:-http://deb.debian.org/debian}" >"$place/log" 2>&1 ||
  skip "debootstrap could not make a root: $(tail -n 1 "$place/log")"
mount -t proc proc "$root/proc" 2>/dev/null || skip "this machine mounts no proc file system"
cp /etc/resolv.conf "$root/etc/resolv.conf"

# in_root WORD...: as root; as_person WORD...: as an ordinary user, with Polish texts.
in_root() { chroot "$root" /usr/bin/env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive "$@"; }
as_person() {
  chroot --userspec=person:person "$root" /usr/bin/env -i PATH=/usr/bin:/bin HOME=/home/person LANGUAGE=pl LC_ALL=C.UTF-8 "$@"
}
apt() { in_root apt-get -q -y -o Dpkg::Use-Pty=0 --no-install-recommends "$@" >"$place/log" 2>&1; }
apt update || skip "the root's package lists could not be fetched: $(grep -m 1 '^[EW]:' "$place/log")"

# The packages, and the same as an earlier version.
(cd "$build" && cpack -B "$place/new" >"$place/log" 2>&1) || { cat "$place/log" >&2; exit 1; }
version=$(dpkg-deb -f "$place"/new/vamba-widget_*.deb Version)
mkdir "$root/debs"
for package in vamba-widget vamba-widget-desktop; do
  cp "$place/new/$package"_*.deb "$root/debs/$package-new.deb"
  dpkg-deb -R "$root/debs/$package-new.deb" "$place/$package"
  sed -i "s/^Version: .*/Version: 0.0.1/; s/vamba-widget (= $version)/vamba-widget (= 0.0.1)/" "$place/$package/DEBIAN/control"
  dpkg-deb --root-owner-group -b "$place/$package" "$root/debs/$package-old.deb" >/dev/null
done
old=(/debs/vamba-widget-old.deb /debs/vamba-widget-desktop-old.deb)
new=(/debs/vamba-widget-new.deb /debs/vamba-widget-desktop-new.deb)

# What the packages depend on is in Debian 12; fetching it is the network's part.
apt -s install "${old[@]}" || fail "the dependencies cannot be met: $(cat "$place/log")"
mapfile -t dependencies < <(sed -n 's/^Inst \([^ ]*\).*/\1/p' "$place/log" | grep -v '^vamba-')
apt install "${dependencies[@]}" || skip "the dependencies could not be fetched: $(grep -m 1 '^E:' "$place/log")"
in_root useradd --create-home person

files() { (cd "$root" && find etc usr opt srv home -xdev ! -name '*.cache' | LC_ALL=C sort); }
files >"$place/before"
runs() {
  local board said status=0
  [ "$(in_root dpkg-query -W -f '${Version}' vamba-widget-desktop)" = "$1" ] || fail "version $1 is not installed"
  board=$(as_person vamba-host show --entry preview)
  grep -qF 'Narada zespołu' <<<"$board" || fail "show said: $board"
  board=$(as_person vamba-host show --entry preview --format svg)
  grep -qF 'Narada zespołu' <<<"$board" || fail "show as a picture said: $board"
  said=$(as_person vamba-host desktop 2>&1) && fail "a desktop without a display"
  grep -qF 'no display is reachable' <<<"$said" || fail "desktop said: $said"
  said=$(as_person vamba-host doctor) || status=$?
  [ "$status" -eq 1 ] || fail "doctor ended with $status: $said"
  grep -q '^fault  token  *none is kept$' <<<"$said" || fail "doctor said: $said"
}
apt install "${old[@]}" || fail "the packages cannot be installed: $(cat "$place/log")"
runs 0.0.1
apt install "${new[@]}" || fail "the packages cannot be upgraded: $(cat "$place/log")"
runs "$version"
apt purge vamba-widget vamba-widget-desktop || fail "the packages cannot be purged: $(cat "$place/log")"
files >"$place/after"
diff "$place/before" "$place/after" >&2 || fail "installing and purging the packages changed these files (< before, > after)"
