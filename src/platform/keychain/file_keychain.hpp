// Keychain items as files `<root>/<access group>/<service>/<account>`, each holding its item's bytes exactly. For
// machines without a Secret Service, and for trials with a folder of one's own. Whoever writes the items makes the
// folders with mode 0700 and the files with 0600.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "platform/keychain/keychain.hpp"
#include "platform/keychain/refusals.hpp"

namespace platform {

/// Reads an item only where nobody else could have read or written it: the root and the two folders below it, and the
/// file, belong to this user, are closed to all others and are no links. What is refused is reported once to
/// `refusals` and is `insecure`; an attribute that is no file name (empty, "..", with a '/') names no item.
class FileKeychain final : public Keychain {
 public:
  /// `refusals` must outlive this.
  FileKeychain(const std::filesystem::path& root, Refusals& refusals);

  /// The root is `root` below `base`, a relative path whose folders are all checked; `base` itself is not.
  static FileKeychain below(const std::filesystem::path& base, const std::filesystem::path& root, Refusals& refusals);

 private:
  KeychainResult find(const KeychainQuery& query, base::Deadline deadline) override;
  KeychainStatus erase(const KeychainQuery& query, base::Deadline deadline) override;

  std::filesystem::path root_;          // the first folder that is checked
  std::vector<std::string> belowRoot_;  // further ones, above those of the items
  Refusals& refusals_;
};

}  // namespace platform
