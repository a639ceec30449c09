// The time zone of programs under a shifted clock.
#include <array>
#include <cstring>

#include <gtest/gtest.h>

#include "base/descriptors/file_descriptor.hpp"
#include "shifted_clock/functions.hpp"

namespace shifted_clock {
namespace {

std::string linkAt(const char* path) {
  std::array<char, 4096> target{};
  const auto length = librarysFunctions().readlink(path, target.data(), target.size());
  return length < 0 ? strerrorname_np(errno) : std::string(target.data(), static_cast<std::size_t>(length));
}

TEST(ZoneUnderAShiftedClock, IsTheTestsWhereTheMachinesIsLookedFor) {
  for (const std::string zone : {"Europe/Vilnius", "America/Santiago"}) {
    testsClock().setZone(zone);
    EXPECT_EQ(linkAt("/etc/localtime"), "/usr/share/zoneinfo/" + zone);
  }
}

TEST(ZoneUnderAShiftedClock, OtherLinksAreTheMachines) {
  EXPECT_EQ(linkAt("/proc/self"), std::to_string(getpid()));
  EXPECT_EQ(linkAt("/no/such/link"), "ENOENT");
  EXPECT_EQ(linkAt("/etc"), "EINVAL");
}

TEST(ZoneUnderAShiftedClock, WatchOfTheMachinesFolderSeesItReplaced) {
  const base::FileDescriptor changes(inotify_init1(IN_CLOEXEC | IN_NONBLOCK));
  ASSERT_GE(librarysFunctions().inotifyAddWatch(changes.get(), "/etc", IN_MOVED_TO), 0);
  alignas(inotify_event) std::array<char, 4096> buffer{};
  EXPECT_EQ(read(changes.get(), buffer.data(), buffer.size()), -1) << "nothing so far";
  testsClock().setZone("Europe/Warsaw");
  ASSERT_GT(read(changes.get(), buffer.data(), buffer.size()), 0);
  EXPECT_STREQ(&buffer[sizeof(inotify_event)], "localtime");
}

}  // namespace
}  // namespace shifted_clock
