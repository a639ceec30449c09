#include "base/files/user_folders.hpp"

#include <map>
#include <string>

#include <gtest/gtest.h>

namespace base {
namespace {

TEST(UserConfigFolder, FollowsTheEnvironmentWhereThatIsAbsolute) {
  using Environment = std::map<std::string, const char*>;
  const struct {
    Environment environment;
    std::optional<std::filesystem::path> folder;
  } cases[] = {
      {{{"XDG_CONFIG_HOME", "/c"}, {"HOME", "/home/a"}}, "/c"},
      {{{"HOME", "/home/a"}}, "/home/a/.config"},
      {{{"XDG_CONFIG_HOME", ""}, {"HOME", "/home/a"}}, "/home/a/.config"},
      {{{"XDG_CONFIG_HOME", "relative"}, {"HOME", "/home/a"}}, "/home/a/.config"},
      {{{"HOME", "relative"}}, std::nullopt},
      {{}, std::nullopt},
  };
  for (const auto& [environment, folder] : cases) {
    const auto lookup = [&environment](const char* name) {
      const auto found = environment.find(name);
      return found == environment.end() ? nullptr : found->second;
    };
    EXPECT_EQ(userConfigFolder(lookup), folder);
  }
}

}  // namespace
}  // namespace base
