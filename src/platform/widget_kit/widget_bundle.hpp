// What an extension offers: a bundle of widgets, each with a body that declares it.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/widget_kit/widget_configuration.hpp"

namespace platform {

/// What a click on the widget opens.
struct OpenTarget {
  enum class Kind { desktopEntry, url };
  Kind kind;
  std::string name;  ///< the id of a desktop entry without its suffix, or an address
};

class Widget {
 public:
  virtual ~Widget() = default;
  /// Computed anew each time the host asks.
  virtual SomeWidgetConfiguration body() const = 0;
  /// In order of preference: a host opens the first that it can.
  virtual std::vector<OpenTarget> opens() const { return {}; }
};

class WidgetBundle {
 public:
  virtual ~WidgetBundle() = default;
  virtual std::vector<std::unique_ptr<Widget>> body() const = 0;
};

}  // namespace platform
