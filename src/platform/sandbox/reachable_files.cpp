#include "platform/sandbox/reachable_files.hpp"

#include <array>
#include <cstdlib>
#include <string>
#include <string_view>
#include <system_error>

namespace platform {
namespace {

namespace fs = std::filesystem;
using Right = ReachableFile::Right;

constexpr std::array systemPaths{
    // Libraries (also those that are loaded late, such as name services), certificates, zones.
    "/usr", "/lib", "/lib64", "/nix/store", "/gnu/store",
    // The whole folder: tools replace files such as resolv.conf, and a rule for a file would only hold for the old one.
    "/etc",
    // Name services and their configuration.
    "/run/systemd", "/run/resolvconf", "/run/NetworkManager", "/run/connman", "/run/netconfig", "/run/nscd",
    "/run/avahi-daemon", "/var/run/nscd", "/var/lib/sss", "/var/lib/libvirt/dnsmasq",
    // Certificates where /etc/ssl leads here.
    "/var/lib/ca-certificates",
    // The C library's allocator and threads.
    "/proc/sys", "/sys/devices/system/cpu",
    // In place of a file of certificates that cannot be used, and for random numbers.
    "/dev/null", "/dev/urandom", "/dev/random"};

// Variables that name a file or folder for the TLS library, the resolver or the zones.
constexpr std::array variables{"SSL_CERT_FILE",   "SSL_CERT_DIR", "OPENSSL_CONF", "OPENSSL_MODULES",
                               "OPENSSL_ENGINES", "HOSTALIASES",  "TZDIR"};

}  // namespace

std::vector<ReachableFile> filesOfTheSystem() {
  std::vector<ReachableFile> files;
  for (const char* const path : systemPaths) files.push_back({path, Right::read});
  for (const char* const variable : variables) {
    const char* const value = std::getenv(variable);
    if (value != nullptr && *value != '\0') files.push_back({value, Right::read});
  }
  if (const char* const value = std::getenv("TZ")) {
    std::string_view zone(value);
    if (zone.starts_with(':')) zone.remove_prefix(1);
    if (zone.starts_with('/')) files.push_back({zone, Right::read});
  }
  // On some systems this is a link to a folder that is named nowhere else. The file may be replaced too.
  std::error_code error;
  const auto resolver = fs::canonical("/etc/resolv.conf", error);
  if (!error && resolver.parent_path() != "/") files.push_back({resolver.parent_path(), Right::read});
  return files;
}

std::vector<ReachableFile> filesOfKeychain(const std::vector<fs::path>& folders) {
  std::vector<ReachableFile> files;
  for (const auto& folder : folders) files.push_back({folder, Right::list});
  if (!files.empty()) files.back().right = Right::readAndRemove;
  return files;
}

}  // namespace platform
