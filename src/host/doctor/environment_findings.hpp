// What the environment and the machine's files decide: language, time zone, trusted certificates.
#pragma once

#include <filesystem>

#include "host/doctor/finding.hpp"

namespace host {

/// The language in use, and the variable that asks for it.
Finding languageFinding();

/// The device's zone. A zone that `TZ` names and the system does not know is a fault: days would be computed in UTC.
Finding zoneFinding();

/// The root certificates that a connection would trust: the file that `SSL_CERT_FILE` names, else the system's folder.
Finding certificatesFinding(const std::filesystem::path& systemFolder = "/etc/ssl/certs");

}  // namespace host
