# shellcheck shell=bash disable=SC2034,SC2154 # $tests_at_once is for the callers, $root is theirs
# What ./run, ./test and the scripts beside this file share; sourced by them, with $root set to the checkout.

jobs=$(nproc)
# Tests mostly wait, for displays, servers and clocks.
tests_at_once=$((2 * jobs))
export NINJA_STATUS='[%f/%t, %es] '
export CLICOLOR_FORCE=0

# Copies of the checkout share compiled objects. Without a home folder the cache is in the checkout.
export CCACHE_BASEDIR="$root" CCACHE_NOHASHDIR=true CCACHE_SLOPPINESS=pch_defines,time_macros
if [ -z "${CCACHE_DIR:-}" ] && ! { [ -n "${HOME:-}" ] && [ -w "$HOME" ]; }; then
  export CCACHE_DIR="$root/build/ccache"
fi

say() { printf '==> %s\n' "$*"; }

# fail TEXT...: says why on standard error and ends the script with status 1.
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

# What is made for Debian 12 works on Debian 13 too; elsewhere the names of packages may differ.
name_system() {
  local name
  # shellcheck disable=SC1091
  case $(. /etc/os-release 2>/dev/null && echo "${ID:-} ${VERSION_ID:-}") in
    'debian 12') return ;;
    'debian 13') say "System: Debian 13; this is made for Debian 12 and works the same here" ;;
    *)
      # shellcheck disable=SC1091
      name=$(. /etc/os-release 2>/dev/null && echo "${PRETTY_NAME:-}")
      say "System: ${name:-unknown}; this is made for Debian 12 and 13, and packages may have other names here"
      ;;
  esac
}

# install_missing LIST...: asks the network for nothing when nothing is missing.
install_missing() {
  command -v dpkg-query >/dev/null || fail "this needs Debian 12 (no dpkg-query here); README.md tells how to build elsewhere"
  name_system
  local missing as_root=() log=$root/build/packages.log
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
  as_root+=(env DEBIAN_FRONTEND=noninteractive apt-get -q -o DPkg::Lock::Timeout=600 -o APT::Update::Error-Mode=any
    -o Dpkg::Use-Pty=0)
  say "Packages: installing ${#missing[@]} (${missing[*]}); apt-get's messages go to build/packages.log"
  mkdir -p "$root/build"
  # Another apt-get may hold the lock of the lists, for which apt-get itself does not wait.
  local tries=60
  until "${as_root[@]}" update </dev/null >"$log" 2>&1; do
    grep -q 'Could not get lock /var/lib/apt/lists' "$log" && [ $((tries -= 1)) -gt 0 ] ||
      fail "the package lists could not be fetched: is the network there? ($(grep -m 1 '^E:' "$log" || echo "see $log"))"
    sleep 5
  done
  "${as_root[@]}" install -y --no-install-recommends "${missing[@]}" </dev/null >>"$log" 2>&1 ||
    fail "apt-get could not install the packages: $(grep -m 1 '^E:' "$log" || echo "see $log")"
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

# build_with_progress PRESET [TARGET...]: the compiler's messages go to a log; a line tells each quarter that is done.
build_with_progress() {
  local preset=$1 log=$root/build/$1/build.log
  shift
  # shellcheck disable=SC2016
  NINJA_STATUS='[%p] ' cmake --build "$root/build/$preset" ${1:+--target "$@"} -- -j"$jobs" </dev/null 2>&1 |
    tee "$log" | awk -v step=25 '
      match($0, /^\[ *[0-9]+%\]/) {
        percent = substr($0, 2, RLENGTH - 3) + 0
        if (percent >= step) { printf "    %d %%\n", percent; fflush(); while (step <= percent) step += 25 }
      }'
  [ "${PIPESTATUS[0]}" -eq 0 ]
}

# build PRESET [TARGET...]
build() {
  local preset=$1
  shift
  cmake --build "$root/build/$preset" ${1:+--target "$@"} -- -j"$jobs" </dev/null
}

# Each test sets the environment that it needs; that of the calling session must not reach it.
clean_environment() {
  env -u http_proxy -u https_proxy -u all_proxy -u no_proxy -u HTTP_PROXY -u HTTPS_PROXY -u ALL_PROXY -u NO_PROXY \
    -u DBUS_SESSION_BUS_ADDRESS -u DISPLAY -u WAYLAND_DISPLAY -u SSL_CERT_FILE -u SSL_CERT_DIR -u TZ \
    -u LANGUAGE -u LC_ALL -u LC_MESSAGES -u LANG -u NO_COLOR -u VAMBA_KEYCHAIN_DIR \
    -u XDG_DATA_HOME -u XDG_CONFIG_HOME -u XDG_STATE_HOME -u XDG_RUNTIME_DIR "$@"
}
