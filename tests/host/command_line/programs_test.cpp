#include "host/command_line/programs.hpp"

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "support/temporary_folder.hpp"

namespace host {
namespace {

class LibexecProgram : public testing::Test {
 protected:
  void put(const std::string& program) {
    std::filesystem::create_directories(std::filesystem::path(folder_.path(program)).parent_path());
    folder_.write(program, "");
  }
  std::string found(const std::string& installed) {
    return std::filesystem::relative(libexecProgram(folder_.path("usr/bin"), "vamba-widzety", installed),
                                     folder_.path(""));
  }

  support::TemporaryFolder folder_;
};

TEST_F(LibexecProgram, IsFoundBesideThenInLibexecThenWhereItWasToBeInstalled) {
  EXPECT_EQ(found("../lib/vamba"), "usr/libexec/vamba/vamba-widzety") << "there is none";
  put("usr/lib/vamba/vamba-widzety");
  EXPECT_EQ(found("../lib/vamba"), "usr/lib/vamba/vamba-widzety");
  put("usr/libexec/vamba/vamba-widzety");
  EXPECT_EQ(found("../lib/vamba"), "usr/libexec/vamba/vamba-widzety");
  put("usr/bin/vamba-widzety");
  EXPECT_EQ(found("../lib/vamba"), "usr/bin/vamba-widzety");
}

TEST_F(LibexecProgram, IsFoundInAnAbsoluteFolder) {
  put("opt/vamba/vamba-widzety");
  EXPECT_EQ(found(folder_.path("opt/vamba")), "opt/vamba/vamba-widzety");
}

TEST_F(LibexecProgram, FindsTheHostBesideThenInBinThenWhereItWasToBeInstalled) {
  const std::string desktop = folder_.path("opt/exec/vamba/vamba-desktop");
  const std::string away = folder_.path("usr/bin");
  EXPECT_EQ(hostProgram(folder_.path("usr/bin/vamba-host"), "../.."), folder_.path("usr/bin/vamba-host")) << "itself";
  EXPECT_EQ(hostProgram(desktop, away), folder_.path("opt/bin/vamba-host")) << "there is none";
  put("usr/bin/vamba-host");
  EXPECT_EQ(hostProgram(desktop, away), folder_.path("usr/bin/vamba-host"));
  EXPECT_EQ(hostProgram(desktop, "../../../usr/bin"), folder_.path("usr/bin/vamba-host"));
  put("opt/bin/vamba-host");
  EXPECT_EQ(hostProgram(desktop, away), folder_.path("opt/bin/vamba-host"));
  put("opt/exec/vamba/vamba-host");
  EXPECT_EQ(hostProgram(desktop, away), folder_.path("opt/exec/vamba/vamba-host"));
}

}  // namespace
}  // namespace host
