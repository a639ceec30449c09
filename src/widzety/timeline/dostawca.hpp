// Answers the host's requests: placeholder and preview at once, snapshot and timeline after loading, with the next
// reload date.
#pragma once

#include "platform/widget_kit/timeline_provider.hpp"
#include "widzety/timeline/otoczenie.hpp"
#include "widzety/timeline/wpis.hpp"

namespace widzety {

/// Keeps no state: every request is answered from scratch, and requests at the same time load independently.
class Dostawca final : public platform::TimelineProvider<Wpis> {
 public:
  explicit Dostawca(const Otoczenie& otoczenie) : otoczenie_(otoczenie) {}

  Wpis placeholder(const platform::TimelineProviderContext& context) const override;
  void getSnapshot(const platform::TimelineProviderContext& context,
                   platform::Completion<Wpis> completion) const override;
  /// One entry, to be reloaded 15 minutes after its loading ended, whether that went well or not.
  void getTimeline(const platform::TimelineProviderContext& context,
                   platform::Completion<platform::Timeline<Wpis>> completion) const override;

 private:
  Otoczenie otoczenie_;
};

}  // namespace widzety
