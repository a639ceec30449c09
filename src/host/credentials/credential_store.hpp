// The device token and the service's address where the extension looks for them: in the Secret Service, else in private
// files. The extension only reads and deletes them; the host stores them when a person signs in.
#pragma once

#include <expected>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "base/text/secret_text.hpp"
#include "platform/keychain/file_keychain.hpp"
#include "platform/keychain/keychain.hpp"
#include "platform/keychain/refusals.hpp"
#include "platform/keychain/secret_service_keychain.hpp"

namespace host {

/// The accounts of the items.
inline constexpr const char* tokenAccount = "token-urzadzenia";
inline constexpr const char* addressAccount = "adres-api";

/// The service that the extension asks where no address is kept.
inline constexpr const char* builtInAddress = "https://vamba.ferol.pl/api";

/// Where items are kept as files.
struct ItemFolder {
  std::filesystem::path path;
  bool alone = false;  ///< `VAMBA_KEYCHAIN_DIR` names it: the Secret Service is not used
};

/// The folder that `VAMBA_KEYCHAIN_DIR` names, else `vamba/keychain` below the user's data folder; absent where there
/// is no data folder.
std::optional<ItemFolder> itemFolder();

/// An account's file below a folder of keychain items.
std::filesystem::path itemFile(const std::filesystem::path& folder, std::string_view account);

/// Writes an item's bytes as a file that only its owner can read, below folders that only their owner can enter. The
/// error is the system's reason.
std::expected<void, std::string> writeItemFile(const std::filesystem::path& folder, std::string_view account,
                                               std::string_view bytes);

/// Errors are sentences for a person, without a full stop.
class CredentialStore {
 public:
  struct Item {
    base::SecretText bytes;
    std::string place;  ///< "the Secret Service", or "the folder PATH"
  };

  CredentialStore();

  std::expected<std::optional<Item>, std::string> find(std::string_view account);

  /// Replaces the item. Gives the place where it is now.
  std::expected<std::string, std::string> store(std::string_view account, std::string_view bytes);

  /// Removes it from wherever it is. False: there was none.
  std::expected<bool, std::string> remove(std::string_view account);

  /// The folder of files that is used instead of the Secret Service; none: the Secret Service.
  std::optional<ItemFolder> folder();

  /// Whether the session has a Secret Service that gives out items. The error says why one that is there does not.
  std::expected<bool, std::string> secretService();

 private:
  /// The store of files in the folder, with the checks that the extension makes.
  platform::FileKeychain filesIn(const ItemFolder& folder);
  std::expected<std::string, std::string> storeFile(const ItemFolder& folder, std::string_view account,
                                                    std::string_view bytes);

  platform::Refusals refusals_;
  platform::SecretServiceKeychain secretService_;
};

}  // namespace host
