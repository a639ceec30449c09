// The day widget's declaration: what the host's gallery says of it and who answers for it.
#pragma once

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

}  // namespace widzety
