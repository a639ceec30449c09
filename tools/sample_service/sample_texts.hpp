// The sample days' titles and project names in English and Lithuanian. The tables are written in Polish.
#pragma once

#include <string_view>

namespace sample {

enum class Language { Polish, English, Lithuanian };

// The text in the language; a text that is not listed stays as it is.
std::string_view translated(std::string_view polish, Language language);

}  // namespace sample
