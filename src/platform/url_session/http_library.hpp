// Initialisation of the HTTP library, once in a process.
#pragma once

namespace platform {

/// Initialises libcurl; it is never torn down, because other code in the process may use it too. Memory that libcurl
/// frees is overwritten first, as it copies header fields that hold credentials. Returns false where it fails.
bool httpLibraryIsReady();

}  // namespace platform
