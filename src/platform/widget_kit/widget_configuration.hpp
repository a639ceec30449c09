// A widget's declaration as the host sees it: kind, name, description, sizes and the answers of its provider, with
// entries as JSON. static_configuration.hpp makes one, and modifiers wrap it:
//
//   StaticConfiguration("org.example.clock", std::make_unique<ClockProvider>(), clockView)
//       .configurationDisplayName("Clock")
//       .supportedFamilies({WidgetFamily::systemSmall})
#pragma once

#include <expected>
#include <memory>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "platform/widget_kit/timeline_provider.hpp"
#include "protocol/view_tree/node.hpp"
#include "protocol/view_tree/widget_family.hpp"

namespace platform {

/// An entry as it travels: JSON text on one line. As a tree of values a large day would take many times the memory.
using EntryJson = std::string;

struct TimelineJson {
  std::vector<EntryJson> entries;
  TimelineReloadPolicy policy;
};

class WidgetConfiguration {
 public:
  virtual ~WidgetConfiguration() = default;

  virtual std::string kind() const = 0;
  virtual std::string displayName() const = 0;
  virtual std::string description() const = 0;
  /// In the order in which the gallery offers them.
  virtual std::vector<protocol::WidgetFamily> supportedFamilies() const = 0;

  virtual EntryJson placeholder(const TimelineProviderContext& context) const = 0;
  virtual void getSnapshot(const TimelineProviderContext& context, Completion<EntryJson> completion) const = 0;
  virtual void getTimeline(const TimelineProviderContext& context, Completion<TimelineJson> completion) const = 0;

  /// The view of an entry in a size; the error names the entry's field that does not decode.
  virtual std::expected<protocol::Node, std::string> content(const nlohmann::json& entry,
                                                             protocol::WidgetFamily family) const = 0;
};

/// A configuration under construction: each modifier wraps the result of the step before it.
class SomeWidgetConfiguration {
 public:
  explicit SomeWidgetConfiguration(std::unique_ptr<const WidgetConfiguration> inner) : inner_(std::move(inner)) {}

  SomeWidgetConfiguration configurationDisplayName(std::string name) &&;
  SomeWidgetConfiguration description(std::string text) &&;
  SomeWidgetConfiguration supportedFamilies(std::vector<protocol::WidgetFamily> families) &&;

  const WidgetConfiguration& operator*() const { return *inner_; }
  const WidgetConfiguration* operator->() const { return inner_.get(); }

 private:
  std::unique_ptr<const WidgetConfiguration> inner_;
};

}  // namespace platform
