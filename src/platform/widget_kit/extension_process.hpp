// Settings of the extension's own process: other processes cannot read its memory, and it ends in time.
#pragma once

#include <chrono>

namespace platform {

/// Call it in the first line of a program that will hold secrets. Afterwards other processes of the same user can
/// neither read this process's memory nor attach to it, and it leaves no core file. It also ignores SSLKEYLOGFILE, so
/// that no TLS key is logged, and OPENSSL_CONF where that names something other than a regular file, so that opening it
/// cannot block. A program that is started with exec has to call this again.
void keepProcessPrivate();

/// From here on a large block of memory goes back to the system as soon as it is freed. By default the C library keeps
/// blocks as large as any that was freed before, and three long answers of the service leave it with hundreds of MB.
void returnLargeBlocks();

/// Ends the process with status 0 when the time has passed, whatever its threads are waiting for.
void endProcessAfter(std::chrono::milliseconds time);

}  // namespace platform
