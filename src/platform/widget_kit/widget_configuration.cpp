#include "platform/widget_kit/widget_configuration.hpp"

namespace platform {
namespace {

/// Forwards every call to the configuration that it wraps. Each modifier below overrides one of them.
class Wrapper : public WidgetConfiguration {
 public:
  explicit Wrapper(std::unique_ptr<const WidgetConfiguration> inner) : inner_(std::move(inner)) {}

  std::string kind() const override { return inner_->kind(); }
  std::string displayName() const override { return inner_->displayName(); }
  std::string description() const override { return inner_->description(); }
  std::vector<protocol::WidgetFamily> supportedFamilies() const override { return inner_->supportedFamilies(); }
  EntryJson placeholder(const TimelineProviderContext& context) const override { return inner_->placeholder(context); }
  void getSnapshot(const TimelineProviderContext& context, Completion<EntryJson> completion) const override {
    inner_->getSnapshot(context, std::move(completion));
  }
  void getTimeline(const TimelineProviderContext& context, Completion<TimelineJson> completion) const override {
    inner_->getTimeline(context, std::move(completion));
  }
  std::expected<protocol::Node, std::string> content(const nlohmann::json& entry,
                                                     protocol::WidgetFamily family) const override {
    return inner_->content(entry, family);
  }

 private:
  std::unique_ptr<const WidgetConfiguration> inner_;
};

class WithDisplayName final : public Wrapper {
 public:
  WithDisplayName(std::unique_ptr<const WidgetConfiguration> inner, std::string name)
      : Wrapper(std::move(inner)), name_(std::move(name)) {}
  std::string displayName() const override { return name_; }

 private:
  std::string name_;
};

class WithDescription final : public Wrapper {
 public:
  WithDescription(std::unique_ptr<const WidgetConfiguration> inner, std::string text)
      : Wrapper(std::move(inner)), text_(std::move(text)) {}
  std::string description() const override { return text_; }

 private:
  std::string text_;
};

class WithFamilies final : public Wrapper {
 public:
  WithFamilies(std::unique_ptr<const WidgetConfiguration> inner, std::vector<protocol::WidgetFamily> families)
      : Wrapper(std::move(inner)), families_(std::move(families)) {}
  std::vector<protocol::WidgetFamily> supportedFamilies() const override { return families_; }

 private:
  std::vector<protocol::WidgetFamily> families_;
};

}  // namespace

SomeWidgetConfiguration SomeWidgetConfiguration::configurationDisplayName(std::string name) && {
  return SomeWidgetConfiguration(std::make_unique<WithDisplayName>(std::move(inner_), std::move(name)));
}

SomeWidgetConfiguration SomeWidgetConfiguration::description(std::string text) && {
  return SomeWidgetConfiguration(std::make_unique<WithDescription>(std::move(inner_), std::move(text)));
}

SomeWidgetConfiguration SomeWidgetConfiguration::supportedFamilies(std::vector<protocol::WidgetFamily> families) && {
  return SomeWidgetConfiguration(std::make_unique<WithFamilies>(std::move(inner_), std::move(families)));
}

}  // namespace platform
