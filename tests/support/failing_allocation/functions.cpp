// malloc() and its kin for a program of which one allocation fails. Loaded before the C library (LD_PRELOAD), whose own
// functions do the work. Counting begins with main(), so neither the dynamic loader nor what is initialised before it
// is concerned.
#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include <dlfcn.h>
#include <fcntl.h>
#include <link.h>
#include <sys/mman.h>
#include <unistd.h>

#include "support/failing_allocation/allocation_page.hpp"

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
}

namespace {

using failing_allocation::AllocationPage;
using Main = int (*)(int, char**, char**);

struct Range {
  std::uintptr_t begin;
  std::uintptr_t end;
};

// Nothing here may allocate.
Main programMain = nullptr;
AllocationPage* page = nullptr;  // none in other programs and before main()
std::array<Range, 64> excepted;
std::size_t exceptedCount = 0;

bool isExcepted(std::string_view library) {
  const char* const names = std::getenv(failing_allocation::exceptVariable);
  std::string_view rest = names == nullptr ? "" : names;
  while (!rest.empty()) {
    const auto end = std::min(rest.find(':'), rest.size());
    if (library.starts_with(rest.substr(0, end))) return true;
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return false;
}

int noteExcepted(dl_phdr_info* info, std::size_t, void*) {
  const std::string_view path = info->dlpi_name;
  if (!isExcepted(path.substr(path.rfind('/') + 1)) || exceptedCount == excepted.size()) return 0;
  Range range{.begin = UINTPTR_MAX, .end = 0};
  for (std::size_t i = 0; i < info->dlpi_phnum; ++i) {
    const auto& part = info->dlpi_phdr[i];
    if (part.p_type != PT_LOAD) continue;
    range.begin = std::min(range.begin, info->dlpi_addr + part.p_vaddr);
    range.end = std::max(range.end, info->dlpi_addr + part.p_vaddr + part.p_memsz);
  }
  excepted[exceptedCount++] = range;
  return 0;
}

void beginCounting() {
  const char* const program = std::getenv(failing_allocation::programVariable);
  const char* const file = std::getenv(failing_allocation::pageVariable);
  if (program == nullptr || file == nullptr || std::strcmp(program, program_invocation_short_name) != 0) return;
  dl_iterate_phdr(noteExcepted, nullptr);
  const int descriptor = ::open(file, O_RDWR | O_CLOEXEC);
  if (descriptor < 0) return;
  void* const memory = ::mmap(nullptr, sizeof(AllocationPage), PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
  ::close(descriptor);
  if (memory != MAP_FAILED) page = static_cast<AllocationPage*>(memory);
}

int countedMain(int count, char** arguments, char** environment) {
  beginCounting();
  return programMain(count, arguments, environment);
}

/// Whether the allocation that `caller` asks for is the one that fails.
bool fails(const void* caller) {
  if (page == nullptr) return false;
  const auto address = reinterpret_cast<std::uintptr_t>(caller);
  for (std::size_t i = 0; i < exceptedCount; ++i) {
    if (address >= excepted[i].begin && address < excepted[i].end) return false;
  }
  if (++page->counted != page->failAt) return false;
  errno = ENOMEM;
  return true;
}

}  // namespace

extern "C" {

void* malloc(std::size_t size) { return fails(__builtin_return_address(0)) ? nullptr : __libc_malloc(size); }

void* calloc(std::size_t count, std::size_t size) {
  return fails(__builtin_return_address(0)) ? nullptr : __libc_calloc(count, size);
}

void* realloc(void* memory, std::size_t size) {
  return fails(__builtin_return_address(0)) ? nullptr : __libc_realloc(memory, size);
}

void* aligned_alloc(std::size_t alignment, std::size_t size) {
  return fails(__builtin_return_address(0)) ? nullptr : __libc_memalign(alignment, size);
}

int posix_memalign(void** memory, std::size_t alignment, std::size_t size) {
  void* const aligned = fails(__builtin_return_address(0)) ? nullptr : __libc_memalign(alignment, size);
  if (aligned == nullptr) return ENOMEM;
  *memory = aligned;
  return 0;
}

int __libc_start_main(Main program, int count, char** arguments, void (*begin)(), void (*end)(), void (*loaderEnd)(),
                      void* stackEnd) {
  programMain = program;
  using Start = int (*)(Main, int, char**, void (*)(), void (*)(), void (*)(), void*);
  const auto start = reinterpret_cast<Start>(dlsym(RTLD_NEXT, "__libc_start_main"));
  return start(countedMain, count, arguments, begin, end, loaderEnd, stackEnd);
}

}  // extern "C"
