#include "platform/keychain/system_keychain.hpp"

#include <cstdlib>
#include <utility>

#include "base/files/user_folders.hpp"
#include "platform/keychain/keychain_environment.hpp"

namespace platform {
namespace {

bool hasNothing(KeychainStatus status) {
  return status == KeychainStatus::itemNotFound || status == KeychainStatus::unavailable;
}

// The more important of two results: a failure, then a success, then "nothing to delete".
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
      refusals_(settings.diagnostics),
      secretService_([&settings] {
        settings.secretService.diagnostics = std::move(settings.diagnostics);
        return std::move(settings.secretService);
      }()) {}

std::optional<FileKeychain> SystemKeychain::folderUsedAlone() {
  const auto folder = environmentText(folderVariable_);
  if (!folder) return std::nullopt;
  return FileKeychain(*folder, refusals_);
}

std::optional<FileKeychain> SystemKeychain::folderOfLastResort() {
  const auto dataFolder = base::userDataFolder(std::getenv);
  if (!dataFolder) return std::nullopt;
  return FileKeychain::below(*dataFolder, folderBelowDataHome_, refusals_);
}

std::vector<std::filesystem::path> SystemKeychain::folders() const {
  if (const auto folder = environmentText(folderVariable_)) return {*folder};
  const auto dataFolder = base::userDataFolder(std::getenv);
  if (!dataFolder) return {};
  std::vector<std::filesystem::path> folders;
  auto path = *dataFolder;
  for (const auto& level : folderBelowDataHome_) folders.push_back(path /= level);
  return folders;
}

KeychainResult SystemKeychain::find(const KeychainQuery& query, base::Deadline deadline) {
  if (auto files = folderUsedAlone()) return files->copyMatching(query, deadline);
  auto result = secretService_.copyMatching(query, deadline);
  if (result.status != KeychainStatus::unavailable) return result;
  if (auto files = folderOfLastResort()) return files->copyMatching(query, deadline);
  return result;
}

KeychainStatus SystemKeychain::erase(const KeychainQuery& query, base::Deadline deadline) {
  if (auto files = folderUsedAlone()) return files->deleteItems(query, deadline);
  // The files first: they cannot hang.
  auto status = KeychainStatus::unavailable;
  if (auto files = folderOfLastResort()) status = files->deleteItems(query, deadline);
  return ofBoth(secretService_.deleteItems(query, deadline), status);
}

}  // namespace platform
