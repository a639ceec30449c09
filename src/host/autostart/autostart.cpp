#include "host/autostart/autostart.hpp"

#include <cstddef>
#include <system_error>

#include <unistd.h>

#include "base/files/read_file.hpp"
#include "base/files/replace_file.hpp"
#include "host/autostart/start_files.hpp"

namespace host {
namespace {

constexpr std::size_t largestFile = 1U << 16U;

std::unexpected<std::string> failure(const std::string& what, const std::filesystem::path& file,
                                     const std::string& reason) {
  return std::unexpected("can't " + what + " " + file.string() + ": " + reason);
}

/// The file's text; none where there is no file. A file that `vamba-host` did not write is an error.
std::expected<std::optional<std::string>, std::string> ownText(const std::filesystem::path& file) {
  auto text = base::readFile(file, largestFile);
  if (text && startedProgram(*text)) return *std::move(text);
  if (text) return std::unexpected(file.string() + " was not written by vamba-host; remove or rename it first");
  if (text.error().kind == base::ReadFailure::Kind::missing) return std::nullopt;
  return failure("use", file, text.error().reason);
}

std::expected<void, std::string> write(const std::filesystem::path& file, const std::string& text) {
  if (const auto made = base::makeFolders(file.parent_path()); !made) {
    return failure("write", file, made.error());
  }
  const auto written = base::replaceFile(file, text, base::Durability::lasting, {.file = 0644});
  if (!written) return failure("write", file, written.error());
  return {};
}

std::expected<void, std::string> removeFile(const std::filesystem::path& file) {
  std::error_code error;
  std::filesystem::remove(file, error);
  if (error) return failure("remove", file, error.message());
  return {};
}

bool isThere(const std::filesystem::path& link) {
  std::error_code ignored;
  return std::filesystem::symlink_status(link, ignored).type() != std::filesystem::file_type::not_found;
}

std::string unitFor(const std::filesystem::path& program, ServiceManager& services) {
  const bool possible = services.canTakeCapabilitiesAway();
  return systemdUnit(program, possible ? UnitCapabilities::takenAway : UnitCapabilities::kept);
}

AutostartStatus describe(StartMeans means, const std::filesystem::path& file, const std::string& text) {
  const auto program = startedProgram(text).value_or("");
  return {means, file, program, access(program.c_str(), X_OK) == 0};
}

}  // namespace

Autostart::Autostart(const std::filesystem::path& configFolder, ServiceManager& services)
    : unit_(configFolder / "systemd/user/vamba-desktop.service"),
      link_(configFolder / "systemd/user/graphical-session.target.wants/vamba-desktop.service"),
      entry_(configFolder / "autostart/vamba-desktop.desktop"),
      services_(services) {}

std::expected<AutostartStatus, std::string> Autostart::on(const std::filesystem::path& program) {
  if (const auto possible = canBeStarted(program); !possible) return std::unexpected(possible.error());
  // Both names are checked before anything is written.
  for (const auto& file : {unit_, entry_}) {
    if (const auto own = ownText(file); !own) return std::unexpected(own.error());
  }
  const bool bySystemd = systemdCanStart(program) && services_.knowsGraphicalSession();
  const auto& file = bySystemd ? unit_ : entry_;
  const std::string text = bySystemd ? unitFor(program, services_) : autostartEntry(program);
  if (const auto written = write(file, text); !written) return std::unexpected(written.error());
  if (bySystemd && !isThere(link_)) {
    // What `systemctl --user enable` does. Here it also works without systemctl.
    std::error_code error;
    std::filesystem::create_directories(link_.parent_path(), error);
    if (!error) std::filesystem::create_symlink("../" + unit_.filename().string(), link_, error);
    if (error) return failure("write", link_, error.message());
  }
  const auto removed = remove(bySystemd ? StartMeans::autostartEntry : StartMeans::systemdUnit);
  if (!removed) return std::unexpected(removed.error());
  if (bySystemd) services_.reload();
  return describe(bySystemd ? StartMeans::systemdUnit : StartMeans::autostartEntry, file, text);
}

std::expected<void, std::string> Autostart::remove(StartMeans means) {
  const auto& file = means == StartMeans::systemdUnit ? unit_ : entry_;
  const auto own = ownText(file);
  if (!own) return std::unexpected(own.error());
  // The link may be left over from a unit that was removed by hand.
  const bool linked = means == StartMeans::systemdUnit && isThere(link_);
  if (linked) {
    if (auto removed = removeFile(link_); !removed) return removed;
  }
  if (*own) {
    if (auto removed = removeFile(file); !removed) return removed;
  }
  if (means == StartMeans::systemdUnit && (linked || *own)) services_.reload();
  return {};
}

std::expected<void, std::string> Autostart::off() {
  const auto unit = remove(StartMeans::systemdUnit);
  const auto entry = remove(StartMeans::autostartEntry);
  return unit ? entry : unit;
}

std::expected<std::optional<AutostartStatus>, std::string> Autostart::status() const {
  const auto unit = ownText(unit_);
  if (!unit) return std::unexpected(unit.error());
  if (const auto& text = *unit; text && isThere(link_)) return describe(StartMeans::systemdUnit, unit_, *text);
  const auto entry = ownText(entry_);
  if (!entry) return std::unexpected(entry.error());
  if (const auto& text = *entry; text && !isSwitchedOff(*text)) {
    return describe(StartMeans::autostartEntry, entry_, *text);
  }
  return std::nullopt;
}

}  // namespace host
