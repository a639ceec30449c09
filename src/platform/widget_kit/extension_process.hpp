// What an extension does about the process that it is: nobody looks into it, and it ends when it is told to.
#pragma once

#include <chrono>

namespace platform {

/// For the first line of a program that will hold secrets. From here on other processes of the same user can neither
/// read this one's memory nor attach to it, and it leaves no core; TLS keys are logged nowhere (SSLKEYLOGFILE), and a
/// configuration of the TLS library that is no regular file (OPENSSL_CONF) is not waited for. Programs that this one
/// would start begin anew.
void keepProcessPrivate();

/// Ends the process with status 0 when the time has passed, whatever its threads are waiting for.
void endProcessAfter(std::chrono::milliseconds time);

}  // namespace platform
