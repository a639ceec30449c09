#include "support/shifted_clock/shifted_clock.hpp"

#include <cerrno>
#include <climits>
#include <filesystem>
#include <new>
#include <system_error>

#include <absl/time/clock.h>
#include <fcntl.h>
#include <linux/futex.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "base/descriptors/file_descriptor.hpp"

namespace support {
namespace {

namespace fs = std::filesystem;
using shifted_clock::ClockPage;

ClockPage* newPage(const std::string& file) {
  const base::FileDescriptor descriptor(open(file.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  void* memory = MAP_FAILED;
  if (descriptor.isOpen() && ftruncate(descriptor.get(), sizeof(ClockPage)) == 0) {
    memory = mmap(nullptr, sizeof(ClockPage), PROT_READ | PROT_WRITE, MAP_SHARED, descriptor.get(), 0);
  }
  if (memory == MAP_FAILED) throw std::system_error(errno, std::generic_category(), file);
  return new (memory) ClockPage{};
}

}  // namespace

ShiftedClock::ShiftedClock(absl::Time now, const std::string& zone)
    : page_(newPage(folder_.path(shifted_clock::pageFile))) {
  fs::create_directory(folder_.path(shifted_clock::zoneFolder));
  setZone(zone);
  set(now);
}

ShiftedClock::~ShiftedClock() { munmap(page_, sizeof(ClockPage)); }

std::map<std::string, std::string> ShiftedClock::environment() const {
  return {{"LD_PRELOAD", VAMBA_PRELOADED_BEFORE VAMBA_SHIFTED_CLOCK_LIBRARY},
          {shifted_clock::folderVariable, folder_.path(".")}};
}

absl::Time ShiftedClock::now() const { return absl::Now() + absl::Nanoseconds(page_->realTime.load()); }

void ShiftedClock::set(absl::Time now) {
  page_->realTime = absl::ToInt64Nanoseconds(now - absl::Now());
  announce();
}

void ShiftedClock::sleep(absl::Duration time) {
  page_->realTime += absl::ToInt64Nanoseconds(time);
  page_->bootTime += absl::ToInt64Nanoseconds(time);
  announce();
}

void ShiftedClock::setZone(const std::string& zone) {
  const fs::path link = fs::path(folder_.path(shifted_clock::zoneFolder)) / "localtime";
  const fs::path fresh = link.string() + ".new";
  fs::create_symlink("/usr/share/zoneinfo/" + zone, fresh);
  fs::rename(fresh, link);
}

void ShiftedClock::announce() {
  ++page_->sets;
  syscall(SYS_futex, &page_->sets, FUTEX_WAKE, INT_MAX, nullptr, nullptr, 0);
}

}  // namespace support
