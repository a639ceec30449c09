// Texts of another process, made fit for a person's terminal.
#pragma once

#include <string>
#include <string_view>

namespace host {

/// `text` with each control character but line ends and tabs replaced by "?", so that no escape sequence passes.
std::string printable(std::string_view text);

}  // namespace host
