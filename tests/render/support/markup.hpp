// Whether a text is well-formed markup, and which elements it holds.
#pragma once

#include <string>
#include <vector>

namespace render::testing {

struct Element {
  std::string name;
  std::vector<std::pair<std::string, std::string>> attributes;
  std::string text;  ///< directly within

  std::string attribute(const std::string& wanted) const {
    for (const auto& [key, value] : attributes) {
      if (key == wanted) return value;
    }
    return "";
  }
};

struct Markup {
  std::string fault;  ///< empty where well-formed
  std::vector<Element> elements;

  std::vector<Element> named(const std::string& name) const {
    std::vector<Element> found;
    for (const auto& element : elements) {
      if (element.name == name) found.push_back(element);
    }
    return found;
  }
};

Markup readMarkup(const std::string& text);

}  // namespace render::testing
