# shellcheck shell=bash disable=SC2154 # $root is the caller's
# What ./run, ./test and the scripts beside this file share; sourced by them, with $root set to the checkout.

jobs=$(nproc)
export NINJA_STATUS='[%f/%t, %es] '
export CLICOLOR_FORCE=0

# Copies of the checkout share compiled objects; without a home folder the cache lives in the checkout.
export CCACHE_BASEDIR="$root" CCACHE_NOHASHDIR=true
if [ -z "${CCACHE_DIR:-}" ] && ! { [ -n "${HOME:-}" ] && [ -w "$HOME" ]; }; then
  export CCACHE_DIR="$root/build/ccache"
fi

say() { printf '==> %s\n' "$*"; }

# The last words of a command that cannot go on.
fail() {
  printf '%s: %s\n' "${0##*/}" "$*" >&2
  exit 1
}

packages_of() { grep -hv '^#' "$@"; }

# missing_packages LIST...: the names of LIST's packages that are not installed.
missing_packages() {
  local names
  mapfile -t names < <(packages_of "$@")
  comm -23 <(printf '%s\n' "${names[@]}" | LC_ALL=C sort -u) \
    <(dpkg-query -W -f '${db:Status-Status} ${Package}\n' "${names[@]}" 2>/dev/null |
      sed -n 's/^installed //p' | LC_ALL=C sort -u)
}

# install_missing LIST...: asks the network for nothing when nothing is missing.
install_missing() {
  command -v dpkg-query >/dev/null || fail "this needs Debian 12 (no dpkg-query here); README.md tells how to build elsewhere"
  local missing as_root=()
  mapfile -t missing < <(missing_packages "$@")
  if [ ${#missing[@]} -eq 0 ]; then
    say "Packages: all are installed"
    return
  fi
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null ||
      fail "these packages are missing and there is no sudo to install them with; as root: apt-get install ${missing[*]}"
    as_root=(sudo)
  fi
  as_root+=(env DEBIAN_FRONTEND=noninteractive apt-get -q -o DPkg::Lock::Timeout=600 -o Dpkg::Use-Pty=0)
  say "Packages: installing ${missing[*]}"
  "${as_root[@]}" update </dev/null || fail "apt-get could not fetch the package lists; its message is above"
  "${as_root[@]}" install -y --no-install-recommends "${missing[@]}" </dev/null ||
    fail "apt-get could not install the packages; its message is above"
}

# configure PRESET: CMake's own report is shown only when it fails. A checkout that was moved starts its build anew.
configure() {
  local log fresh=() cache=$root/build/$1/CMakeCache.txt
  if [ -f "$cache" ] && ! grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$root" "$cache"; then
    fresh=(--fresh)
  fi
  if ! log=$(cmake "${fresh[@]}" -S "$root" --preset "$1" 2>&1 </dev/null); then
    printf '%s\n' "$log" >&2
    return 1
  fi
}

# build PRESET [TARGET...]
build() {
  local preset=$1
  shift
  cmake --build "$root/build/$preset" ${1:+--target "$@"} -- -j"$jobs" </dev/null
}
