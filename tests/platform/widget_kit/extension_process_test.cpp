#include "platform/widget_kit/extension_process.hpp"

#include <cstdlib>
#include <new>
#include <thread>

#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/descriptors/uncaught_exception.hpp"
#include "support/temporary_folder.hpp"

namespace platform {
namespace {

using testing::ExitedWithCode;

// Each runs in a process of its own, which it changes for good.

TEST(ExtensionProcess, IsClosedToOthersAndLeavesNoCore) {
  const auto look = [] {
    keepProcessPrivate();
    rlimit core{};
    getrlimit(RLIMIT_CORE, &core);
    std::exit(prctl(PR_GET_DUMPABLE) == 0 && core.rlim_cur == 0 && core.rlim_max == 0 ? 0 : 1);
  };
  EXPECT_EXIT(look(), ExitedWithCode(0), "");
}

TEST(ExtensionProcess, LogsNoTlsKeys) {
  const auto look = [] {
    setenv("SSLKEYLOGFILE", "/tmp/keys", 1);
    keepProcessPrivate();
    std::exit(std::getenv("SSLKEYLOGFILE") == nullptr ? 0 : 1);
  };
  EXPECT_EXIT(look(), ExitedWithCode(0), "");
}

TEST(ExtensionProcess, DropsAConfigurationThatWouldHaveToBeWaitedFor) {
  const support::TemporaryFolder folder;
  folder.write("file", "");
  ASSERT_EQ(mkfifo(folder.path("pipe").c_str(), 0600), 0);
  const auto look = [](const std::string& path, bool isKept) {
    setenv("OPENSSL_CONF", path.c_str(), 1);
    keepProcessPrivate();
    std::exit((std::getenv("OPENSSL_CONF") != nullptr) == isKept ? 0 : 1);
  };
  EXPECT_EXIT(look(folder.path("file"), true), ExitedWithCode(0), "");
  EXPECT_EXIT(look(folder.path("missing"), true), ExitedWithCode(0), "");
  EXPECT_EXIT(look(folder.path("pipe"), false), ExitedWithCode(0), "");
  EXPECT_EXIT(look(folder.path(""), false), ExitedWithCode(0), "");
}

TEST(ExtensionProcess, EndsWithAStatusWhereAnExceptionIsNotCaught) {
  const auto fail = [] {
    base::endProcessOnUncaughtException("program");
    std::thread([] { throw std::bad_alloc(); }).join();
  };
  EXPECT_EXIT(fail(), ExitedWithCode(1), "program: ended by an error");
}

TEST(ExtensionProcess, EndsWithStatusZeroThoughItsThreadNeverWould) {
  const auto hang = [] {
    sigset_t all;
    sigfillset(&all);
    sigprocmask(SIG_SETMASK, &all, nullptr);  // as a parent may have left it
    endProcessAfter(std::chrono::milliseconds(10));
    while (true) pause();
  };
  EXPECT_EXIT(hang(), ExitedWithCode(0), "");
}

}  // namespace
}  // namespace platform
