// What an extension offers: a bundle of widgets, each with a body that declares it.
#pragma once

#include <memory>
#include <vector>

#include "platform/widget_kit/widget_configuration.hpp"

namespace platform {

class Widget {
 public:
  virtual ~Widget() = default;
  /// Computed anew each time the host asks.
  virtual SomeWidgetConfiguration body() const = 0;
};

class WidgetBundle {
 public:
  virtual ~WidgetBundle() = default;
  virtual std::vector<std::unique_ptr<Widget>> body() const = 0;
};

}  // namespace platform
