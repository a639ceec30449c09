// The keychain of this machine's user: the Secret Service where the session has one, else private files. Chosen anew
// at each use. Constructing one reads nothing.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "platform/keychain/file_keychain.hpp"
#include "platform/keychain/keychain.hpp"
#include "platform/keychain/refusals.hpp"
#include "platform/keychain/secret_service_keychain.hpp"

namespace platform {

class SystemKeychain final : public Keychain {
 public:
  struct Settings {
    /// The variable that names a folder of files to be used alone, instead of everything else.
    std::string folderVariable;
    /// The folder of files below the user's data folder (`$XDG_DATA_HOME`), used where there is no Secret Service.
    std::filesystem::path folderBelowDataHome;
    /// Told what the file store refuses, see `Refusals`, and when the Secret Service does not answer.
    DiagnosticSink diagnostics;
    SecretServiceKeychain::Settings secretService;  // its `diagnostics` are the ones above
  };

  explicit SystemKeychain(Settings settings);

 private:
  /// Does not fall back to files where the Secret Service is locked or does not answer: they may hold an old token.
  KeychainResult find(const KeychainQuery& query, base::Deadline deadline) override;

  /// Reaches both stores, so that an item deleted from one does not come back from the other.
  KeychainStatus erase(const KeychainQuery& query, base::Deadline deadline) override;

  std::optional<FileKeychain> folderUsedAlone();
  std::optional<FileKeychain> folderOfLastResort();

  std::string folderVariable_;
  std::filesystem::path folderBelowDataHome_;
  Refusals refusals_;
  SecretServiceKeychain secretService_;
};

}  // namespace platform
