// The user's keychain: the Secret Service where the session has one, else private files. The choice is made at each
// use. The constructor reads nothing.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "platform/keychain/file_keychain.hpp"
#include "platform/keychain/keychain.hpp"
#include "platform/keychain/refusals.hpp"
#include "platform/keychain/secret_service_keychain.hpp"

namespace platform {

class SystemKeychain final : public Keychain {
 public:
  struct Settings {
    /// The environment variable that names a folder of files. If it is set, only that folder is used.
    std::string folderVariable;
    /// The folder of files below the user's data folder (`$XDG_DATA_HOME`), used where there is no Secret Service.
    std::filesystem::path folderBelowDataHome;
    /// Called when the file store refuses an item, see `Refusals`, and when the Secret Service does not answer.
    DiagnosticSink diagnostics;
    SecretServiceKeychain::Settings secretService;  // its `diagnostics` are the ones above
  };

  explicit SystemKeychain(Settings settings);

  /// The folders that the file store opens, outermost first; the items are in the last. Empty where there is no store
  /// of files.
  std::vector<std::filesystem::path> folders() const;

 private:
  /// Does not fall back to files while the Secret Service is locked or silent: they may hold an old token.
  KeychainResult find(const KeychainQuery& query, base::Deadline deadline) override;

  /// Deletes from both stores, so that the next read does not find the item in the other one.
  KeychainStatus erase(const KeychainQuery& query, base::Deadline deadline) override;

  std::optional<FileKeychain> folderUsedAlone();
  std::optional<FileKeychain> folderOfLastResort();

  std::string folderVariable_;
  std::filesystem::path folderBelowDataHome_;
  Refusals refusals_;
  SecretServiceKeychain secretService_;
};

}  // namespace platform
