// Keychain items as files `<root>/<access group>/<service>/<account>`, each holding its item's bytes exactly. For
// machines without a Secret Service, and for trials with a folder of one's own. Whoever writes the items makes the
// folders with mode 0700 and the files with 0600.
#pragma once

#include <filesystem>

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

  KeychainResult copyMatching(const KeychainQuery& query) override;
  KeychainStatus deleteItems(const KeychainQuery& query) override;

 private:
  std::filesystem::path root_;
  Refusals& refusals_;
};

}  // namespace platform
