#include "base/json/json_text.hpp"

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

#include "base/text/control_characters.hpp"
#include "base/text/json_strings.hpp"

namespace base {
namespace {

using nlohmann::json;

// Builds the value as the library's own builder does, but stops at the first level too deep: a line of only "[" would
// otherwise cost some sixty bytes of memory for each of its bytes.
class BoundedBuilder : public nlohmann::json_sax<json> {
 public:
  explicit BoundedBuilder(std::size_t mostValues) : left_(mostValues) {}

  json take() { return std::move(root_); }
  const std::string& fault() const { return fault_; }

  bool null() override { return put(nullptr); }
  bool boolean(bool value) override { return put(value); }
  bool number_integer(std::int64_t value) override { return put(value); }
  bool number_unsigned(std::uint64_t value) override { return put(value); }
  bool number_float(double value, const std::string&) override { return put(value); }
  bool string(std::string& value) override { return put(std::move(value)); }
  bool binary(json::binary_t&) override { return false; }
  bool key(std::string& name) override {
    key_ = std::move(name);
    return true;
  }
  bool start_object(std::size_t) override { return open(json::object()); }
  bool start_array(std::size_t) override { return open(json::array()); }
  bool end_object() override { return close(); }
  bool end_array() override { return close(); }
  bool parse_error(std::size_t position, const std::string&, const nlohmann::detail::exception& error) override {
    constexpr int numberOutOfRange = 406;  // the library's number for it
    fault_ = (error.id == numberOutOfRange ? "number out of range" : "not JSON") + std::string(" at byte ") +
             std::to_string(position);
    return false;
  }

 private:
  template <typename Value>
  json* place(Value&& value) {
    if (open_.empty()) {
      root_ = std::forward<Value>(value);
      return &root_;
    }
    json& parent = *open_.back();
    if (parent.is_array()) return &parent.get_ref<json::array_t&>().emplace_back(std::forward<Value>(value));
    json& slot = parent.get_ref<json::object_t&>()[std::move(key_)];
    slot = std::forward<Value>(value);
    return &slot;
  }

  bool count() {
    if (left_-- > 0) return true;
    fault_ = tooManyValues;
    return false;
  }

  template <typename Value>
  bool put(Value&& value) {
    if (!count()) return false;
    place(std::forward<Value>(value));
    return true;
  }

  bool open(json container) {
    if (!count()) return false;
    if (open_.size() == maximumNesting) {
      fault_ = "nested deeper than " + std::to_string(maximumNesting) + " levels";
      return false;
    }
    open_.push_back(place(std::move(container)));
    return true;
  }

  bool close() {
    open_.pop_back();
    return true;
  }

  std::size_t left_;  ///< values that may still come
  json root_;
  // The pointers stay valid: only the innermost container grows, and none of them points into it.
  std::vector<json*> open_;
  std::string key_;
  std::string fault_;
};

constexpr std::string_view whiteSpace = " \t\r\n";

bool holdsLongWhiteSpace(std::string_view text) {
  JsonStrings strings;
  std::size_t length = 0;
  return std::ranges::any_of(text, [&](char byte) {
    length = strings.isOutside(byte) && whiteSpace.contains(byte) ? length + 1 : 0;
    return length > longestWhiteSpace;
  });
}

/// Escapes DEL and the controls U+0080 to U+009F, which terminals also obey; the library does not. In JSON text they
/// occur only in strings.
std::string withControlsEscaped(std::string_view text) {
  return replaceControls(text, [](char32_t control) {
    constexpr std::string_view digits = "0123456789abcdef";
    return std::string{'\\', 'u', '0', '0', digits[control >> 4], digits[control & 0xf]};
  });
}

/// Whether the escape is "\\udc00" to "\\udfff", the second half of a pair, which belongs to the escape before it.
bool beginsLowSurrogate(std::string_view text) {
  return text.size() >= 4 && text.starts_with("\\u") && (text[2] == 'd' || text[2] == 'D') &&
         std::string_view("cdefCDEF").contains(text[3]);
}

}  // namespace

std::expected<json, std::string> parseJson(std::string_view text, std::size_t mostValues) {
  // The library takes a NUL for the end of its input and would ignore whatever follows.
  if (const auto nul = text.find('\0'); nul != std::string_view::npos) {
    return std::unexpected("not JSON at byte " + std::to_string(nul + 1));
  }
  text = text.substr(0, text.find_last_not_of(whiteSpace) + 1);
  if (text.size() > longestWhiteSpace && holdsLongWhiteSpace(text)) {
    return std::unexpected("more than 64 KiB of white space between two values");
  }
  BoundedBuilder builder(mostValues);
  if (!json::sax_parse(text, &builder)) return std::unexpected(builder.fault());
  return builder.take();
}

std::string shortened(std::string_view text, std::size_t longestString, std::size_t longest) {
  using Place = JsonStrings::Place;
  std::string kept;
  JsonStrings strings;
  std::size_t length = 0;      // of the string so far
  std::size_t escapeLeft = 0;  // bytes of an escape that are still to come
  bool isCut = false;
  bool isWhiteSpace = false;
  for (std::size_t i = 0; i < text.size() && kept.size() <= longest; ++i) {
    const char byte = text[i];
    const Place place = strings.place(byte);
    if (place == Place::openingQuote) {
      length = 0;
      escapeLeft = 0;
      isCut = false;
    } else if (place == Place::inside) {
      const bool beginsCharacter = escapeLeft == 0 && (byte & 0xc0) != 0x80 && !beginsLowSurrogate(text.substr(i));
      if (escapeLeft > 0) {
        --escapeLeft;
      } else if (byte == '\\') {
        escapeLeft = text.substr(i + 1).starts_with('u') ? 5 : 1;
      }
      isCut = isCut || (++length > longestString && beginsCharacter);
      if (isCut) continue;
    }
    const bool follows = std::exchange(isWhiteSpace, place == Place::outside && whiteSpace.contains(byte));
    if (!follows || !isWhiteSpace) kept += byte;
  }
  return kept;
}

std::string toText(const json& value) { return value.dump(-1, ' ', false, json::error_handler_t::replace); }

std::string toPrintableText(const json& value) { return withControlsEscaped(toText(value)); }

}  // namespace base
