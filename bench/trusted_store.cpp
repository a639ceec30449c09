#include "trusted_store.hpp"

#include <fstream>
#include <system_error>

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include "support/file_content.hpp"
#include "support/tool.hpp"

namespace bench {
namespace {

// Where Debian's libcurl and OpenSSL look.
constexpr const char* systemsStore = "/etc/ssl/certs";

std::string subjectHash(const std::string& certificate, const std::filesystem::path& scratch) {
  support::runTool("openssl", "openssl", {"x509", "-noout", "-hash", "-in", certificate}, scratch.string());
  return support::contentOf(scratch).substr(0, 8);
}

}  // namespace

TrustedStore::TrustedStore(std::filesystem::path folder, const std::vector<std::string>& authorities)
    : folder_(std::move(folder)) {
  namespace fs = std::filesystem;
  fs::copy(systemsStore, folder_, fs::copy_options::recursive | fs::copy_options::copy_symlinks);
  for (const std::string& authority : authorities) {
    const std::string hash = subjectHash(authority, folder_ / "hash.txt");
    // Equal subjects are told apart by the number.
    int number = 0;
    while (fs::exists(folder_ / (hash + "." + std::to_string(number)))) ++number;
    fs::copy_file(authority, folder_ / (hash + "." + std::to_string(number)));
    std::ofstream(bundle(), std::ios::binary | std::ios::app) << support::contentOf(authority);
    fs::remove(folder_ / "hash.txt");
  }
}

bool TrustedStore::takeThePlaceOfTheSystems() const {
  const int spaces = geteuid() == 0 ? CLONE_NEWNS : CLONE_NEWNS | CLONE_NEWUSER;
  return unshare(spaces) == 0 && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
         mount(folder_.c_str(), systemsStore, nullptr, MS_BIND, nullptr) == 0;
}

}  // namespace bench
