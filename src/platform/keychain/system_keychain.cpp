#include "platform/keychain/system_keychain.hpp"

#include <utility>

#include "platform/keychain/file_keychain.hpp"
#include "platform/keychain/keychain_environment.hpp"

namespace platform {
namespace {

bool hasNothing(KeychainStatus status) {
  return status == KeychainStatus::itemNotFound || status == KeychainStatus::unavailable;
}

// A store that could not delete matters more than one that did; one that did, more than one that had nothing.
KeychainStatus ofBoth(KeychainStatus service, KeychainStatus files) {
  for (const auto status : {service, files}) {
    if (status != KeychainStatus::success && !hasNothing(status)) return status;
  }
  const bool deleted = service == KeychainStatus::success || files == KeychainStatus::success;
  return deleted ? KeychainStatus::success : KeychainStatus::itemNotFound;
}

}  // namespace

SystemKeychain::SystemKeychain(Settings settings)
    : folderVariable_(std::move(settings.folderVariable)),
      folderBelowDataHome_(std::move(settings.folderBelowDataHome)),
      refusals_(std::move(settings.diagnostics)),
      secretService_(std::move(settings.secretService)) {}

std::optional<std::filesystem::path> SystemKeychain::folderUsedAlone() const {
  return environmentText(folderVariable_);
}

std::optional<std::filesystem::path> SystemKeychain::folderOfLastResort() const {
  const auto dataFolder = userDataFolder();
  if (!dataFolder) return std::nullopt;
  return *dataFolder / folderBelowDataHome_;
}

KeychainResult SystemKeychain::copyMatching(const KeychainQuery& query) {
  if (auto folder = folderUsedAlone()) return FileKeychain(*std::move(folder), refusals_).copyMatching(query);
  auto result = secretService_.copyMatching(query);
  if (result.status != KeychainStatus::unavailable) return result;
  if (auto folder = folderOfLastResort()) return FileKeychain(*std::move(folder), refusals_).copyMatching(query);
  return result;
}

KeychainStatus SystemKeychain::deleteItems(const KeychainQuery& query) {
  if (auto folder = folderUsedAlone()) return FileKeychain(*std::move(folder), refusals_).deleteItems(query);
  // The files first: they cannot hang.
  auto files = KeychainStatus::unavailable;
  if (auto folder = folderOfLastResort()) files = FileKeychain(*std::move(folder), refusals_).deleteItems(query);
  return ofBoth(secretService_.deleteItems(query), files);
}

}  // namespace platform
