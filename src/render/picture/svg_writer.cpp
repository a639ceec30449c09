#include "render/picture/svg_writer.hpp"

#include <array>
#include <charconv>
#include <cmath>

#include "base/text/xml.hpp"

namespace render {
void appendNumber(std::string& text, double value) {
  const double thousandths = std::round(value * 1000);
  std::array<char, 48> digits{};
  // Adding zero turns negative zero into zero.
  const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), thousandths / 1000 + 0.0,
                                    std::chars_format::fixed, 3);
  std::string_view written(digits.data(), result.ptr);
  while (written.ends_with('0')) written.remove_suffix(1);
  if (written.ends_with('.')) written.remove_suffix(1);
  text += written;
}

SvgWriter& SvgWriter::element(std::string_view name) {
  name_ = name;
  out_ += '<';
  out_ += name;
  return *this;
}

SvgWriter& SvgWriter::attribute(std::string_view name, std::string_view value) {
  out_ += ' ';
  out_ += name;
  out_ += "=\"";
  out_ += base::escapedForXml(value);
  out_ += '"';
  return *this;
}

SvgWriter& SvgWriter::attribute(std::string_view name, double value) {
  std::string number;
  appendNumber(number, value);
  return attribute(name, number);
}

SvgWriter& SvgWriter::colour(std::string_view name, const Colour& colour) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string hex = "#";
  for (const unsigned channel : {colour.red, colour.green, colour.blue}) {
    hex += digits[channel >> 4U];
    hex += digits[channel & 0xFU];
  }
  attribute(name, hex);
  if (colour.opacity < 1) attribute(std::string(name) + "-opacity", colour.opacity);
  return *this;
}

void SvgWriter::close() { out_ += "/>\n"; }

void SvgWriter::content(std::string_view text) {
  out_ += '>';
  out_ += base::escapedForXml(text);
  end(name_);
}

void SvgWriter::open() { out_ += ">\n"; }

void SvgWriter::end(std::string_view name) {
  out_ += "</";
  out_ += name;
  out_ += ">\n";
}

}  // namespace render
