#include "widzety/timeline/dostawca.hpp"

#include "widzety/timeline/wczytywanie.hpp"
#include "widzety/timeline/wpis_przykladowy.hpp"

namespace widzety {
namespace {

constexpr int minutyDoOdswiezenia = 15;

absl::Time dataOdswiezenia(const platform::Clock& zegar) {
  const absl::Time teraz = zegar.now();
  return zegar.calendar().addingMinutes(teraz, minutyDoOdswiezenia).value_or(teraz + absl::Seconds(900));
}

}  // namespace

Wpis Dostawca::placeholder(const platform::TimelineProviderContext&) const { return wpisPrzykladowy(otoczenie_.zegar); }

void Dostawca::getSnapshot(const platform::TimelineProviderContext& context,
                           platform::Completion<Wpis> completion) const {
  if (context.isPreview) {
    completion(wpisPrzykladowy(otoczenie_.zegar));
    return;
  }
  otoczenie_.taski.start([otoczenie = otoczenie_, completion = std::move(completion)](std::stop_token stop) mutable {
    completion(wczytajWpis(otoczenie, std::move(stop)));
  });
}

void Dostawca::getTimeline(const platform::TimelineProviderContext&,
                           platform::Completion<platform::Timeline<Wpis>> completion) const {
  otoczenie_.taski.start([otoczenie = otoczenie_, completion = std::move(completion)](std::stop_token stop) mutable {
    std::vector<Wpis> wpisy;
    wpisy.push_back(wczytajWpis(otoczenie, std::move(stop)));
    completion({.entries = std::move(wpisy),
                .policy = platform::TimelineReloadPolicy::after(dataOdswiezenia(otoczenie.zegar))});
  });
}

}  // namespace widzety
