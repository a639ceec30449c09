// A widget that the user cannot configure: a kind, a provider, and a view for each entry.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "platform/widget_kit/widget_configuration.hpp"

namespace platform {

/// Returns the size in which a view is drawn. A view calls it when it renders, not when the content is built.
using FamilyEnvironment = std::function<protocol::WidgetFamily()>;

/// How an entry travels between the extension and its host. A widget specialises it for its entry type with
///   static EntryJson toJson(const Entry&);
///   static std::expected<Entry, std::string> fromJson(const nlohmann::json&);   // the error names the field
template <typename Entry>
struct EntryForm;

template <TimelineEntry Entry>
class StaticConfigurationOf final : public WidgetConfiguration {
 public:
  using Content = std::function<protocol::Node(Entry, const FamilyEnvironment&)>;

  StaticConfigurationOf(std::string kind, std::unique_ptr<const TimelineProvider<Entry>> provider, Content content)
      : kind_(std::move(kind)), provider_(std::move(provider)), content_(std::move(content)) {}

  std::string kind() const override { return kind_; }
  std::string displayName() const override { return {}; }
  std::string description() const override { return {}; }
  std::vector<protocol::WidgetFamily> supportedFamilies() const override {
    return {protocol::WidgetFamily::systemSmall, protocol::WidgetFamily::systemMedium,
            protocol::WidgetFamily::systemLarge};
  }

  EntryJson placeholder(const TimelineProviderContext& context) const override {
    return EntryForm<Entry>::toJson(provider_->placeholder(context));
  }

  void getSnapshot(const TimelineProviderContext& context, Completion<EntryJson> completion) const override {
    provider_->getSnapshot(context, Completion<Entry>([completion = std::move(completion)](const Entry& entry) mutable {
                             completion(EntryForm<Entry>::toJson(entry));
                           }));
  }

  void getTimeline(const TimelineProviderContext& context, Completion<TimelineJson> completion) const override {
    provider_->getTimeline(
        context, Completion<Timeline<Entry>>([completion = std::move(completion)](Timeline<Entry> timeline) mutable {
          TimelineJson json{.policy = timeline.policy};
          for (const auto& entry : timeline.entries) json.entries.push_back(EntryForm<Entry>::toJson(entry));
          timeline.entries.clear();  // a large day is not kept beside its text
          completion(std::move(json));
        }));
  }

  std::expected<protocol::Node, std::string> content(const nlohmann::json& entry,
                                                     protocol::WidgetFamily family) const override {
    auto decoded = EntryForm<Entry>::fromJson(entry);
    if (!decoded) return std::unexpected(decoded.error());
    return content_(*std::move(decoded), [family] { return family; });
  }

 private:
  std::string kind_;
  std::unique_ptr<const TimelineProvider<Entry>> provider_;
  Content content_;
};

/// The first step of a widget's body: kind, provider and content. Name, description and families follow as modifiers.
template <typename Provider, typename Content>
SomeWidgetConfiguration StaticConfiguration(std::string kind, std::unique_ptr<Provider> provider, Content content) {
  using Entry = decltype(provider->placeholder({}));
  return SomeWidgetConfiguration(std::make_unique<StaticConfigurationOf<Entry>>(
      std::move(kind), std::move(provider), typename StaticConfigurationOf<Entry>::Content(std::move(content))));
}

}  // namespace platform
