// The escaped texts are read back by the real readers: the entries by GLib, the units by systemd.
#include "host/autostart/start_files.hpp"

#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>

#include <gio/gio.h>
#include <gtest/gtest.h>

#include "support/file_content.hpp"
#include "support/temporary_folder.hpp"

namespace host {
namespace {

const char* const names[] = {
    "plain",       "with space", "100%",   "%h%%u",        "$HOME",       "${HOME}",
    "back\\slash", "\"quoted\"", "`date`", "'single'",     "Łódź 😀",     "; rm -x & | < > ( ) * ? # ~",
    "\\n",         "\\\\",       "\\\"",   "ends with \\", "$$ % \\ \" `"};

// As GLib starts an entry: the string's escapes, then '%', then the quotes.
std::vector<std::string> startedByGlib(const std::string& text) {
  GKeyFile* const file = g_key_file_new();
  EXPECT_TRUE(g_key_file_load_from_data(file, text.data(), text.size(), G_KEY_FILE_NONE, nullptr)) << text;
  char* const exec = g_key_file_get_string(file, "Desktop Entry", "Exec", nullptr);
  std::string line;
  for (const char* c = exec; c != nullptr && *c != '\0'; ++c) {
    if (*c == '%') {
      ++c;
      EXPECT_EQ(*c, '%') << exec;
    }
    line += *c;
  }
  g_free(exec);
  g_key_file_free(file);
  std::vector<std::string> words;
  int count = 0;
  char** argv = nullptr;
  if (g_shell_parse_argv(line.c_str(), &count, &argv, nullptr)) words.assign(argv, argv + count);
  g_strfreev(argv);
  return words;
}

TEST(AutostartEntry, StartsExactlyThisProgramWhateverItsPath) {
  for (const char* name : names) {
    const std::filesystem::path program = std::string("/opt/") + name + "/vamba-host";
    const std::vector<std::string> expected{program.string(), "desktop", "--at-login"};
    EXPECT_EQ(startedByGlib(autostartEntry(program)), expected) << program;
  }
}

TEST(AutostartEntry, IsTriedByThePlainPath) {
  const auto text = autostartEntry("/opt/a\\b 100%/vamba-host");
  EXPECT_NE(text.find("\nTryExec=/opt/a\\\\b 100%/vamba-host\n"), std::string::npos) << text;
}

// systemd-analyze names a missing program by the path that it understood.
TEST(SystemdUnit, IsAcceptedBySystemdWhateverTheProgramsPath) {
  ASSERT_EQ(std::system("command -v systemd-analyze >/dev/null"), 0) << "systemd-analyze is not installed";
  const support::TemporaryFolder folder;
  const std::string verify = "XDG_RUNTIME_DIR=" + folder.path("") + " systemd-analyze --user verify --man=no '" +
                             folder.path("vamba-desktop.service") + "' >'" + folder.path("said") + "' 2>&1";
  for (const char* name : names) {
    const std::filesystem::path program = std::filesystem::path(folder.path("bin")) / name / "vamba-host";
    if (!systemdCanStart(program)) continue;
    std::filesystem::create_directories(program.parent_path());
    std::filesystem::copy_file("/bin/true", program);
    folder.write("vamba-desktop.service", systemdUnit(program, UnitCapabilities::takenAway));
    const int status = std::system(verify.c_str());
    const std::string text = support::contentOf(folder.path("said"));
    EXPECT_EQ(status, 0) << program << "\n" << text;
    EXPECT_EQ(text.find("vamba-desktop.service"), std::string::npos) << program << "\n" << text;
  }
  for (const char* name : {"back\\slash", "\"quoted\"", "'single'"}) {
    EXPECT_FALSE(systemdCanStart(std::filesystem::path("/opt") / name / "vamba-host")) << name;
  }
  folder.write("vamba-desktop.service", systemdUnit(folder.path("missing/vamba-host"), UnitCapabilities::kept));
  EXPECT_NE(std::system(verify.c_str()), 0) << "a missing program is not noticed";
}

// From 0.0, the least exposed, to 10.0; a unit without any of the restrictions has 9.8.
TEST(SystemdUnit, IsHardenedByTheMeasureOfSystemd) {
  const support::TemporaryFolder folder;
  const auto isAtMost = [&](int exposure, UnitCapabilities capabilities) {
    folder.write("vamba-desktop.service", systemdUnit("/bin/true", capabilities));
    return std::system(
               ("XDG_RUNTIME_DIR=" + folder.path("") +
                " systemd-analyze --user security --offline=true --no-pager --threshold=" + std::to_string(exposure) +
                " '" + folder.path("vamba-desktop.service") + "' >'" + folder.path("said") + "' 2>&1")
                   .c_str()) == 0;
  };
  EXPECT_TRUE(isAtMost(40, UnitCapabilities::takenAway)) << support::contentOf(folder.path("said"));
  EXPECT_TRUE(isAtMost(65, UnitCapabilities::kept)) << support::contentOf(folder.path("said"));
  EXPECT_FALSE(isAtMost(10, UnitCapabilities::takenAway)) << "no exposure is ever too high";
}

// Where its namespaces or capabilities cannot be had, systemd does not start the unit of an ordinary user (status 217,
// 218, 226).
TEST(SystemdUnit, AsksForNothingThatAUsersSystemdMayNotDo) {
  for (const auto capabilities : {UnitCapabilities::kept, UnitCapabilities::takenAway}) {
    std::istringstream lines(systemdUnit("/bin/true", capabilities));
    for (std::string line; std::getline(lines, line);) {
      const bool asked = line == "PrivateUsers=yes" || line == "CapabilityBoundingSet=";
      if (asked && capabilities == UnitCapabilities::takenAway) continue;
      for (const char* forbidden :
           {"Protect", "Private", "Capability", "Ambient", "Read", "Device", "User=", "IPAddress"}) {
        EXPECT_FALSE(line.starts_with(forbidden)) << line;
      }
    }
  }
}

TEST(StartFiles, TellWhichProgramTheyStart) {
  for (const char* name : names) {
    const std::filesystem::path program = std::string("/opt/") + name + "/vamba-host";
    EXPECT_EQ(startedProgram(systemdUnit(program, UnitCapabilities::takenAway)), program);
    EXPECT_EQ(startedProgram(autostartEntry(program)), program);
    EXPECT_TRUE(canBeStarted(program)) << program;
  }
  for (const char* foreign : {"", "[Desktop Entry]\nExec=vamba-host desktop\n", "# X-Vamba-Program=/bin/sh\n"}) {
    EXPECT_EQ(startedProgram(foreign), std::nullopt) << foreign;
  }
}

TEST(StartFiles, CannotNamePathsThatNoEntryMayHold) {
  EXPECT_FALSE(canBeStarted("/opt/a=b/vamba-host"));
  EXPECT_FALSE(canBeStarted("/opt/a\nb/vamba-host"));
  EXPECT_FALSE(canBeStarted("/opt/a\x7f/vamba-host"));
}

TEST(AutostartEntry, IsSwitchedOffByTheKeysOfSettingsPrograms) {
  const std::string text = autostartEntry("/bin/sh");
  EXPECT_FALSE(isSwitchedOff(text));
  EXPECT_TRUE(isSwitchedOff(text + "Hidden=true\n"));
  EXPECT_TRUE(isSwitchedOff(text + "X-GNOME-Autostart-enabled=false\n"));
  EXPECT_FALSE(isSwitchedOff(text + "Hidden=false\n"));
}

}  // namespace
}  // namespace host
