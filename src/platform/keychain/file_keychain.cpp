#include "platform/keychain/file_keychain.hpp"

#include <expected>
#include <iterator>
#include <string>
#include <utility>

#include <fcntl.h>

#include "platform/keychain/item_identity.hpp"
#include "platform/keychain/private_files.hpp"

namespace platform {
namespace {

// "/a/link/" and "/a/link/." would follow the link that "/a/link" is refused for.
std::filesystem::path withoutTrailingSlashes(const std::filesystem::path& path) {
  auto kept = path;
  while (kept.has_relative_path() && (kept.filename().empty() || kept.filename() == ".") && kept.has_parent_path() &&
         kept.parent_path() != kept) {
    kept = kept.parent_path();
  }
  return kept;
}

bool namesFile(const ItemIdentity& item) {
  return item.itemClass == genericPasswordClass && isEntryName(item.accessGroup) && isEntryName(item.service) &&
         isEntryName(item.account);
}

struct ItemFolder {
  base::FileDescriptor descriptor;
  std::filesystem::path path;
};

KeychainStatus statusOf(const FileRefusal& refusal, const std::filesystem::path& path, Refusals& refusals) {
  if (refusal.kind == FileRefusal::Kind::missing) return KeychainStatus::itemNotFound;
  refusals.report(path.native(), refusal.fault);
  return refusal.kind == FileRefusal::Kind::insecure ? KeychainStatus::insecure : KeychainStatus::failed;
}

std::expected<ItemFolder, KeychainStatus> openItemFolder(const std::filesystem::path& root,
                                                         std::vector<std::string> levels, const ItemIdentity& item,
                                                         Refusals& refusals) {
  levels.insert(levels.end(), {item.accessGroup, item.service});
  ItemFolder folder{base::FileDescriptor(), root};
  auto opened = openPrivateFolder(AT_FDCWD, root.native());
  for (const auto& level : levels) {
    if (!opened) break;
    folder.descriptor = *std::move(opened);
    folder.path /= level;
    opened = openPrivateFolder(folder.descriptor.get(), level);
  }
  if (!opened) return std::unexpected(statusOf(opened.error(), folder.path, refusals));
  folder.descriptor = *std::move(opened);
  return folder;
}

}  // namespace

FileKeychain::FileKeychain(const std::filesystem::path& root, Refusals& refusals)
    : root_(withoutTrailingSlashes(root)), refusals_(refusals) {}

FileKeychain FileKeychain::below(const std::filesystem::path& base, const std::filesystem::path& root,
                                 Refusals& refusals) {
  FileKeychain keychain(base / *root.begin(), refusals);
  for (auto folder = std::next(root.begin()); folder != root.end(); ++folder) keychain.belowRoot_.push_back(*folder);
  return keychain;
}

KeychainResult FileKeychain::find(const KeychainQuery& query, base::Deadline) {
  const auto item = itemIdentity(query);
  if (!item) return {KeychainStatus::badQuery, std::nullopt};
  if (!namesFile(*item)) return {KeychainStatus::itemNotFound, std::nullopt};
  const auto folder = openItemFolder(root_, belowRoot_, *item, refusals_);
  if (!folder) return {folder.error(), std::nullopt};
  auto bytes = readPrivateFile(folder->descriptor, item->account, largestItem);
  if (!bytes) return {statusOf(bytes.error(), folder->path / item->account, refusals_), std::nullopt};
  if (!asksForData(query)) return {KeychainStatus::success, std::nullopt};
  return {KeychainStatus::success, *std::move(bytes)};
}

KeychainStatus FileKeychain::erase(const KeychainQuery& query, base::Deadline) {
  const auto item = itemIdentity(query);
  if (!item) return KeychainStatus::badQuery;
  if (!namesFile(*item)) return KeychainStatus::itemNotFound;
  const auto folder = openItemFolder(root_, belowRoot_, *item, refusals_);
  if (!folder) return folder.error();
  const auto removed = removeFile(folder->descriptor, item->account);
  return removed ? KeychainStatus::success : statusOf(removed.error(), folder->path / item->account, refusals_);
}

}  // namespace platform
