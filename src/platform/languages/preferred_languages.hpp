// The user's preferred languages, as the environment names them. Which of them a program speaks is its own choice.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// The languages of `LANGUAGE` (a list parted by colons), else of the first of `LC_ALL`, `LC_MESSAGES` and `LANG` that
/// is set and not empty; most preferred first. An encoding or modifier is dropped ("pl_PL.UTF-8" gives "pl_PL"); "C"
/// and "POSIX" name no language. Reads the environment at each call; needs no locale to be installed.
std::vector<std::string> preferredLanguages();

/// The language of a tag: its first piece between '-' and '_', in lower case ("en-GB" gives "en", "-LT" gives "lt");
/// empty for a tag that has no piece.
std::string primarySubtag(std::string_view tag);

}  // namespace platform
