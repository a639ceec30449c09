// The module VambaWidzety: its bundle, which holds the day widget and nothing else.
#pragma once

#include <string_view>

#include "platform/widget_kit/widget_bundle.hpp"
#include "widzety/timeline/otoczenie.hpp"

namespace widzety {

class PakietWidzetow final : public platform::WidgetBundle {
 public:
  static constexpr std::string_view modul = "VambaWidzety";

  explicit PakietWidzetow(const Otoczenie& otoczenie) : otoczenie_(otoczenie) {}
  std::vector<std::unique_ptr<platform::Widget>> body() const override;

 private:
  Otoczenie otoczenie_;
};

}  // namespace widzety
