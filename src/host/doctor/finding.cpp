#include "host/doctor/finding.hpp"

#include <string_view>

#include "host/extension/printable.hpp"

namespace host {
namespace {

constexpr std::size_t verdictWidth = 7;
constexpr std::size_t subjectWidth = 16;

std::string padded(std::string_view text, std::size_t width) {
  std::string result(text);
  if (result.size() < width) result.append(width - result.size(), ' ');
  return result;
}

std::string_view word(Verdict verdict) {
  switch (verdict) {
    case Verdict::note:
      return "note";
    case Verdict::fault:
      return "fault";
    case Verdict::works:
      break;
  }
  return "ok";
}

}  // namespace

std::string inWords(const Finding& finding) {
  std::string text = padded(word(finding.verdict), verdictWidth) + padded(finding.subject, subjectWidth);
  text += printable(finding.what) + "\n";
  if (!finding.advice.empty()) text += std::string(verdictWidth + subjectWidth, ' ') + printable(finding.advice) + "\n";
  return text;
}

}  // namespace host
