#include "host/credentials/credential_store.hpp"

#include <cstdlib>

#include <sys/stat.h>
#include <unistd.h>

#include "base/files/replace_file.hpp"
#include "base/files/user_folders.hpp"
#include "host/credentials/secret_item.hpp"
#include "host/diagnostics/diagnostics.hpp"
#include "platform/keychain/keychain_environment.hpp"

namespace host {
namespace {

using platform::KeychainKey;
using platform::KeychainStatus;

constexpr const char* service = "pl.ferol.vamba";
constexpr const char* accessGroup = "QX4R2M7K9A.pl.ferol.vamba";

constexpr const char* folderOfLastResort = "vamba/keychain";  // below the user's data folder

platform::KeychainQuery queryFor(std::string_view account) {
  return {{KeychainKey::itemClass, platform::genericPasswordClass},
          {KeychainKey::service, service},
          {KeychainKey::account, std::string(account)},
          {KeychainKey::accessGroup, accessGroup},
          {KeychainKey::returnData, true},
          {KeychainKey::matchLimit, platform::MatchLimit::one}};
}

std::unexpected<std::string> failure(KeychainStatus status) {
  switch (status) {
    case KeychainStatus::locked:
      return std::unexpected<std::string>(keyring_fault::locked);
    case KeychainStatus::needsPrompt:
      return std::unexpected<std::string>(keyring_fault::asksFirst);
    case KeychainStatus::timedOut:
      return std::unexpected<std::string>(keyring_fault::silent);
    case KeychainStatus::insecure:
      return std::unexpected<std::string>(
          "other users could reach the keychain's files; make the folders 0700 and the files 0600");
    case KeychainStatus::unavailable:
      return std::unexpected<std::string>(
          "there is no Secret Service, and neither XDG_DATA_HOME nor HOME names a folder");
    default:
      return std::unexpected<std::string>("the keychain could not be used");
  }
}

std::string placeOf(const std::filesystem::path& folder) { return "the folder " + folder.string(); }

constexpr const char* secretServicePlace = "the Secret Service";

/// Whether there is a file as it is written here. Anything else in its place, such as a link, is refused when it is
/// read.
bool isItemFile(const std::filesystem::path& file) {
  struct stat status{};
  return lstat(file.c_str(), &status) == 0 && S_ISREG(status.st_mode) && status.st_uid == geteuid() &&
         (status.st_mode & 07777) == 0600;
}

}  // namespace

std::optional<ItemFolder> itemFolder() {
  if (auto alone = platform::environmentText("VAMBA_KEYCHAIN_DIR")) return ItemFolder{*std::move(alone), true};
  const auto dataFolder = base::userDataFolder(std::getenv);
  if (!dataFolder) return std::nullopt;
  return ItemFolder{*dataFolder / folderOfLastResort, false};
}

std::filesystem::path itemFile(const std::filesystem::path& folder, std::string_view account) {
  return folder / accessGroup / service / account;
}

std::expected<void, std::string> writeItemFile(const std::filesystem::path& folder, std::string_view account,
                                               std::string_view bytes) {
  const auto file = itemFile(folder, account);
  constexpr base::Rights ownersAlone{.file = 0600, .folder = 0700};
  if (auto made = base::makeFolders(file.parent_path(), ownersAlone); !made) return made;
  // A new file would go where a link leads, and take over the rights of the old one.
  std::error_code none;
  if (!isItemFile(file)) std::filesystem::remove(file, none);
  return base::replaceFile(file, bytes, base::Durability::lasting, ownersAlone);
}

CredentialStore::CredentialStore()
    : refusals_([](std::string_view line) { say(Priority::warning, line); }), secretService_({}) {}

std::optional<ItemFolder> CredentialStore::folder() {
  auto files = itemFolder();
  if (files && files->alone) return files;
  if (secretService_.copyMatching(queryFor(tokenAccount)).status != KeychainStatus::unavailable) return std::nullopt;
  return files;
}

platform::FileKeychain CredentialStore::filesIn(const ItemFolder& folder) {
  const auto dataFolder = base::userDataFolder(std::getenv);
  if (folder.alone || !dataFolder) return {folder.path, refusals_};
  return platform::FileKeychain::below(*dataFolder, folderOfLastResort, refusals_);
}

std::expected<bool, std::string> CredentialStore::secretService() {
  const auto status = secretService_.copyMatching(queryFor(tokenAccount)).status;
  if (status == KeychainStatus::unavailable) return false;
  if (status != KeychainStatus::success && status != KeychainStatus::itemNotFound) return failure(status);
  return true;
}

std::expected<std::optional<CredentialStore::Item>, std::string> CredentialStore::find(std::string_view account) {
  const auto files = folder();
  if (files) base::removeLeftovers(itemFile(files->path, account));
  auto found = files ? filesIn(*files).copyMatching(queryFor(account)) : secretService_.copyMatching(queryFor(account));
  if (found.status == KeychainStatus::itemNotFound) return std::nullopt;
  if (found.status != KeychainStatus::success || !found.data) return failure(found.status);
  return Item{*std::move(found.data), files ? placeOf(files->path) : secretServicePlace};
}

std::expected<std::string, std::string> CredentialStore::store(std::string_view account, std::string_view bytes) {
  if (const auto files = folder()) return storeFile(*files, account, bytes);
  const auto status = secretService_.copyMatching(queryFor(account)).status;
  if (status != KeychainStatus::success && status != KeychainStatus::itemNotFound) return failure(status);
  const SecretItem item{{"class", platform::genericPasswordClass},
                        {"service", service},
                        {"account", std::string(account)},
                        {"access-group", accessGroup}};
  if (const auto stored = storeSecretItem("Vamba", item, bytes); !stored) return std::unexpected(stored.error());
  return secretServicePlace;
}

std::expected<std::string, std::string> CredentialStore::storeFile(const ItemFolder& folder, std::string_view account,
                                                                   std::string_view bytes) {
  const auto file = itemFile(folder.path, account);
  if (const auto written = writeItemFile(folder.path, account, bytes); !written) {
    return std::unexpected<std::string>("can't write " + file.string() + ": " + written.error());
  }
  // Folders that were there may be open to others, and what is in them would be refused when it is read.
  const auto read = filesIn(folder).copyMatching(queryFor(account));
  if (read.status != KeychainStatus::success) {
    std::error_code none;
    std::filesystem::remove(file, none);
    return failure(read.status);
  }
  return placeOf(folder.path);
}

std::expected<bool, std::string> CredentialStore::remove(std::string_view account) {
  const auto files = itemFolder();
  bool removed = false;
  const auto judge = [&](KeychainStatus status) {
    removed |= status == KeychainStatus::success;
    return status == KeychainStatus::success || status == KeychainStatus::itemNotFound ||
           status == KeychainStatus::unavailable;
  };
  if (files) {
    base::removeLeftovers(itemFile(files->path, account));
    const auto status = filesIn(*files).deleteItems(queryFor(account));
    if (!judge(status)) return failure(status);
  }
  if (!files || !files->alone) {
    const auto status = secretService_.deleteItems(queryFor(account));
    if (!judge(status)) return failure(status);
  }
  return removed;
}

}  // namespace host
