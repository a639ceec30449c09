#include "support/failing_allocation/failing_allocation.hpp"

#include <cerrno>
#include <new>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include "base/descriptors/file_descriptor.hpp"

namespace support {
namespace {

using failing_allocation::AllocationPage;

AllocationPage* newPage(const std::string& file) {
  const base::FileDescriptor descriptor(open(file.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  void* memory = MAP_FAILED;
  if (descriptor.isOpen() && ftruncate(descriptor.get(), sizeof(AllocationPage)) == 0) {
    memory = mmap(nullptr, sizeof(AllocationPage), PROT_READ | PROT_WRITE, MAP_SHARED, descriptor.get(), 0);
  }
  if (memory == MAP_FAILED) throw std::system_error(errno, std::generic_category(), file);
  return new (memory) AllocationPage{};
}

}  // namespace

FailingAllocation::FailingAllocation(std::string program, std::string except)
    : program_(std::move(program)), except_(std::move(except)), page_(newPage(folder_.path("page"))) {}

FailingAllocation::~FailingAllocation() { munmap(page_, sizeof(AllocationPage)); }

std::map<std::string, std::string> FailingAllocation::environment() const {
  return {{"LD_PRELOAD", VAMBA_FAILING_ALLOCATION_LIBRARY},
          {failing_allocation::pageVariable, folder_.path("page")},
          {failing_allocation::programVariable, program_},
          {failing_allocation::exceptVariable, except_}};
}

void FailingAllocation::failAt(std::uint64_t number) {
  page_->counted = 0;
  page_->failAt = number;
}

}  // namespace support
