// How a fuzzer reports that its property does not hold.
#pragma once

#include <cstdlib>

namespace fuzz {

/// Ends the fuzzer unless the condition holds; libFuzzer then keeps the input.
inline void require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace fuzz
