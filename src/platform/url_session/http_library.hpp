// Initialisation of the HTTP library, once in a process, and what it was built with.
#pragma once

#include <string>

namespace platform {

/// Initialises libcurl; it is never torn down, because other code in the process may use it too. Memory that libcurl
/// frees is overwritten first, as it copies header fields that hold credentials. Returns false where it fails.
bool startHttpLibrary();

/// The folder of hashed certificates that the library was built to use; empty where it has none.
std::string defaultCertificateFolder();

}  // namespace platform
