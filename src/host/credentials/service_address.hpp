// Which texts are addresses of a service.
#pragma once

#include <optional>
#include <string>

#include "platform/url/url.hpp"

namespace host {

/// The address of a service: an http or https URL with a host. Absent where the text is none.
///
///   serviceAddress("HTTPS://vamba.example.org/api")  // scheme "https", host "vamba.example.org"
///   serviceAddress("vamba.example.org")              // absent: a relative reference
///   serviceAddress("https://a b")                    // absent: no URL
std::optional<platform::Url> serviceAddress(const std::string& text);

}  // namespace host
