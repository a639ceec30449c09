// A widget of the simplest kind, whose slow answers a test holds back: for tests of the platform layer.
#pragma once

#include <condition_variable>
#include <mutex>
#include <stop_token>

#include "base/tasks/task_group.hpp"
#include "base/text/instant.hpp"
#include "platform/widget_kit/static_configuration.hpp"
#include "platform/widget_kit/widget_bundle.hpp"
#include "protocol/view_tree/builders.hpp"

namespace support {

struct SampleEntry {
  absl::Time date;
  std::string word;
  bool operator==(const SampleEntry&) const = default;
};

inline absl::Time sampleDate() { return absl::FromUnixSeconds(1741944600); }

/// Holds tasks back until it is opened or they are stopped.
class Gate {
 public:
  void open() {
    const std::lock_guard lock(mutex_);
    open_ = true;
    changed_.notify_all();
  }
  void wait(std::stop_token stop) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, std::move(stop), [this] { return open_; });
  }

 private:
  std::mutex mutex_;
  std::condition_variable_any changed_;
  bool open_ = false;
};

/// Loads by waiting until the test lets it go, or until it is stopped.
class SampleProvider final : public platform::TimelineProvider<SampleEntry> {
 public:
  SampleProvider(base::TaskGroup& tasks, Gate& gate) : tasks_(tasks), gate_(gate) {}

  SampleEntry placeholder(const platform::TimelineProviderContext&) const override {
    return {sampleDate(), "placeholder"};
  }
  void getSnapshot(const platform::TimelineProviderContext& context,
                   platform::Completion<SampleEntry> completion) const override {
    if (context.isPreview) return completion({sampleDate(), "preview"});
    tasks_.start([&gate = gate_, completion = std::move(completion)](std::stop_token stop) mutable {
      gate.wait(std::move(stop));
      completion({sampleDate(), "live"});
    });
  }
  void getTimeline(const platform::TimelineProviderContext&,
                   platform::Completion<platform::Timeline<SampleEntry>> completion) const override {
    tasks_.start([&gate = gate_, completion = std::move(completion)](std::stop_token stop) mutable {
      gate.wait(std::move(stop));
      completion({.entries = {{sampleDate(), "loaded"}},
                  .policy = platform::TimelineReloadPolicy::after(sampleDate() + absl::Minutes(15))});
    });
  }

 private:
  base::TaskGroup& tasks_;
  Gate& gate_;
};

}  // namespace support

template <>
struct platform::EntryForm<support::SampleEntry> {
  static EntryJson toJson(const support::SampleEntry& entry) {
    return nlohmann::json{{"date", base::formatInstant(entry.date)}, {"word", entry.word}}.dump();
  }
  static std::expected<support::SampleEntry, std::string> fromJson(const nlohmann::json& json) {
    if (!json.is_object() || !json.contains("word")) return std::unexpected("word: missing");
    return support::SampleEntry{sampleDateOf(json), json["word"].get<std::string>()};
  }

 private:
  static absl::Time sampleDateOf(const nlohmann::json& json) {
    return base::parseInstant(json.value("date", std::string())).value_or(support::sampleDate());
  }
};

namespace support {

class SampleWidget final : public platform::Widget {
 public:
  SampleWidget(base::TaskGroup& tasks, Gate& gate) : tasks_(tasks), gate_(gate) {}

  platform::SomeWidgetConfiguration body() const override {
    const auto content = [](const SampleEntry& entry, const platform::FamilyEnvironment& family) -> protocol::Node {
      return protocol::Text(entry.word + " in " + std::string(nameOf(family())));
    };
    return platform::StaticConfiguration("sample", std::make_unique<SampleProvider>(tasks_, gate_), content)
        .configurationDisplayName("Sample")
        .description("A sample.")
        .supportedFamilies({protocol::WidgetFamily::systemSmall, protocol::WidgetFamily::systemLarge});
  }

 private:
  base::TaskGroup& tasks_;
  Gate& gate_;
};

class SampleBundle final : public platform::WidgetBundle {
 public:
  SampleBundle(base::TaskGroup& tasks, Gate& gate) : tasks_(tasks), gate_(gate) {}

  std::vector<std::unique_ptr<platform::Widget>> body() const override {
    std::vector<std::unique_ptr<platform::Widget>> widgets;
    widgets.push_back(std::make_unique<SampleWidget>(tasks_, gate_));
    return widgets;
  }

 private:
  base::TaskGroup& tasks_;
  Gate& gate_;
};

}  // namespace support
