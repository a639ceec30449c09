// What a test and the program whose allocation fails share: a file that both map.
#pragma once

#include <atomic>
#include <cstdint>

namespace failing_allocation {

/// Names the file of the page.
inline constexpr const char* pageVariable = "VAMBA_TEST_ALLOCATION_PAGE";
/// The program whose allocations count, by its file's name. Programs that it starts have the same environment.
inline constexpr const char* programVariable = "VAMBA_TEST_ALLOCATION_PROGRAM";
/// Libraries whose own allocations neither count nor fail: beginnings of their files' names, parted by colons.
inline constexpr const char* exceptVariable = "VAMBA_TEST_ALLOCATION_EXCEPT";

struct AllocationPage {
  std::atomic<std::uint64_t> failAt;   ///< the number of the allocation that fails, from 1; 0: none
  std::atomic<std::uint64_t> counted;  ///< allocations since the program's main() began
};
static_assert(std::atomic<std::uint64_t>::is_always_lock_free, "atomics with a lock are no good between processes");

}  // namespace failing_allocation
