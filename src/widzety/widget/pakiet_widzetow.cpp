#include "widzety/widget/pakiet_widzetow.hpp"

#include "widzety/widget/widzet_dnia.hpp"

namespace widzety {

std::vector<std::unique_ptr<platform::Widget>> PakietWidzetow::body() const {
  std::vector<std::unique_ptr<platform::Widget>> widzety;
  widzety.push_back(std::make_unique<WidzetDnia>(otoczenie_));
  return widzety;
}

}  // namespace widzety
