// The HTTP library, made ready once for the process.
#pragma once

namespace platform {

/// Never undone: other code in the process may use the library too. What the library gives back to the heap is
/// overwritten first, as it copies header fields that hold credentials. False where it cannot be made ready.
bool httpLibraryIsReady();

}  // namespace platform
