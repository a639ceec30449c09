#include "base/files/user_folders.hpp"

#include <map>
#include <string>

#include <gtest/gtest.h>

namespace base {
namespace {

TEST(UserFolders, FollowTheEnvironmentWhereThatIsAbsolute) {
  using Environment = std::map<std::string, const char*>;
  using Folder = std::optional<std::filesystem::path>;
  const struct {
    Environment environment;
    Folder config;
    Folder data;
  } cases[] = {
      {{{"XDG_CONFIG_HOME", "/c"}, {"XDG_DATA_HOME", "/d"}, {"HOME", "/home/a"}}, "/c", "/d"},
      {{{"HOME", "/home/a"}}, "/home/a/.config", "/home/a/.local/share"},
      {{{"XDG_CONFIG_HOME", ""}, {"XDG_DATA_HOME", ""}, {"HOME", "/home/a"}},
       "/home/a/.config",
       "/home/a/.local/share"},
      {{{"XDG_CONFIG_HOME", "relative"}, {"XDG_DATA_HOME", "relative"}, {"HOME", "/home/a"}},
       "/home/a/.config",
       "/home/a/.local/share"},
      {{{"HOME", "relative"}}, std::nullopt, std::nullopt},
      {{}, std::nullopt, std::nullopt},
  };
  for (const auto& [environment, config, data] : cases) {
    const auto lookup = [&environment](const char* name) {
      const auto found = environment.find(name);
      return found == environment.end() ? nullptr : found->second;
    };
    EXPECT_EQ(userConfigFolder(lookup), config);
    EXPECT_EQ(userDataFolder(lookup), data);
  }
}

}  // namespace
}  // namespace base
