// A program of which one allocation fails, as malloc(3) fails where memory has run out for a moment.
//
// The program is started with `environment()`, which loads a library before the C library (LD_PRELOAD). It counts the
// allocations from the beginning of main() on. What certain libraries allocate for themselves can be left out: those
// that end the process by a signal where they have no memory, which no program can change.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "support/failing_allocation/allocation_page.hpp"
#include "support/temporary_folder.hpp"

namespace support {

class FailingAllocation {
 public:
  /// `program` is the name of its file. `except` are beginnings of the names of libraries' files, parted by colons.
  /// Throws std::system_error.
  FailingAllocation(std::string program, std::string except);
  ~FailingAllocation();
  FailingAllocation(const FailingAllocation&) = delete;
  FailingAllocation& operator=(const FailingAllocation&) = delete;

  std::map<std::string, std::string> environment() const;

  /// The allocation, counted from 1, that fails in the next run; 0: none.
  void failAt(std::uint64_t number);
  /// How many allocations there were since `failAt`.
  std::uint64_t counted() const { return page_->counted; }

 private:
  std::string program_;
  std::string except_;
  TemporaryFolder folder_;
  failing_allocation::AllocationPage* page_;
};

}  // namespace support
