// The module VambaWidzety: its bundle holds the day widget and nothing else. The widget declares its name, description
// and sizes for the host's gallery, its provider and its view.
#pragma once

#include <string_view>

#include "platform/widget_kit/widget_bundle.hpp"
#include "widzety/timeline/otoczenie.hpp"

namespace widzety {

class WidzetDnia final : public platform::Widget {
 public:
  explicit WidzetDnia(const Otoczenie& otoczenie) : otoczenie_(otoczenie) {}
  platform::SomeWidgetConfiguration body() const override;
  std::vector<platform::OpenTarget> opens() const override;

 private:
  Otoczenie otoczenie_;
};

class PakietWidzetow final : public platform::WidgetBundle {
 public:
  static constexpr std::string_view modul = "VambaWidzety";

  explicit PakietWidzetow(const Otoczenie& otoczenie) : otoczenie_(otoczenie) {}
  std::vector<std::unique_ptr<platform::Widget>> body() const override;

 private:
  Otoczenie otoczenie_;
};

}  // namespace widzety
