#include "platform/json_decoding/json_grammar.hpp"

#include "platform/json_decoding/json_number.hpp"
#include "platform/json_decoding/json_string.hpp"

namespace platform {
namespace {

using Checked = std::expected<void, std::string_view>;

Checked malformed(std::string_view reason) { return std::unexpected(reason); }

Checked malformed(simdjson::error_code error) {
  return std::unexpected(std::string_view(simdjson::error_message(error)));
}

Checked checkScalar(std::string_view token) {
  if (token.empty()) return malformed("a value is missing");
  switch (token.front()) {
    case '"':
      if (token.size() < 2 || token.back() != '"') return malformed("a string has no end");
      if (!hasWellFormedEscapes(token.substr(1, token.size() - 2)))
        return malformed("a string holds an unknown escape");
      return {};
    case 't':
      return token == "true" ? Checked() : malformed("a literal is none of true, false and null");
    case 'f':
      return token == "false" ? Checked() : malformed("a literal is none of true, false and null");
    case 'n':
      return token == "null" ? Checked() : malformed("a literal is none of true, false and null");
    default:
      return isJsonNumber(token) ? Checked() : malformed("a value is neither a literal, a number nor a string");
  }
}

class GrammarCheck {
 public:
  explicit GrammarCheck(std::string_view body) : end_(body.data() + body.size()) {}

  /// Recursion is safe here: it ends at the greatest nesting.
  Checked value(simdjson::ondemand::value value, int depth) {
    const std::string_view token = trimmedToken(value.raw_json_token());
    const bool isContainer = token.starts_with('[') || token.starts_with('{');
    if (token.starts_with('"')) {
      // Left where it stands, a string would be skipped as a key if a stray colon follows.
      if (const auto error = value.get_raw_json_string().error()) return malformed(error);
    }
    if (!isContainer) return checkScalar(token);
    if (depth > maximumNesting) return malformed("arrays and objects are nested too deeply");
    return token.front() == '[' ? array(value, depth) : object(value, depth);
  }

 private:
  Checked array(simdjson::ondemand::value& value, int depth) {
    simdjson::ondemand::array elements;
    if (const auto error = value.get_array().get(elements)) return malformed(error);
    for (auto element : elements) {
      if (element.error()) return malformed(element.error());
      if (Checked checked = this->value(element.value_unsafe(), depth + 1); !checked) return checked;
    }
    return {};
  }

  Checked object(simdjson::ondemand::value& value, int depth) {
    simdjson::ondemand::object fields;
    if (const auto error = value.get_object().get(fields)) return malformed(error);
    for (auto field : fields) {
      if (field.error()) return malformed(field.error());
      if (!hasWellFormedEscapes(key(field.value_unsafe()))) return malformed("a key holds an unknown escape");
      if (Checked checked = this->value(field.value_unsafe().value(), depth + 1); !checked) return checked;
    }
    return {};
  }

  std::string_view key(const simdjson::ondemand::field& field) const {
    const char* start = field.key().raw();
    return untilClosingQuote({start, static_cast<std::size_t>(end_ - start)});
  }

  const char* end_;
};

}  // namespace

std::string_view trimmedToken(std::string_view token) { return token.substr(0, token.find_last_not_of(" \t\n\r") + 1); }

Checked checkGrammar(simdjson::ondemand::document& document, std::string_view body) {
  std::string_view first;
  if (const auto error = document.raw_json_token().get(first)) return malformed(error);
  const std::string_view token = trimmedToken(first);
  if (!token.starts_with('[') && !token.starts_with('{')) {
    const std::string_view rest = body.substr(static_cast<std::size_t>(token.data() + token.size() - body.data()));
    if (!trimmedToken(rest).empty()) return malformed("something follows the value");
    return checkScalar(token);
  }

  simdjson::ondemand::value root;
  if (const auto error = document.get_value().get(root)) return malformed(error);
  if (Checked checked = GrammarCheck(body).value(root, 1); !checked) return checked;
  if (document.current_location().error() != simdjson::OUT_OF_BOUNDS) return malformed("something follows the value");
  return {};
}

}  // namespace platform
