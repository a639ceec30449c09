// Findings as a person reads them, in the messages of failed tests.
#pragma once

#include <ostream>

#include "host/doctor/finding.hpp"

namespace host {

inline void PrintTo(const Finding& finding, std::ostream* out) { *out << inWords(finding); }

}  // namespace host
