#include "host/command_line/completion.hpp"

#include <string_view>

#include <CLI/CLI.hpp>
#include <absl/strings/str_split.h>

namespace host {
namespace {

/// The candidates that begin with what is typed of the last word.
class Candidates {
 public:
  explicit Candidates(std::string_view typed) : typed_(typed) {}

  void add(std::string_view word, std::string_view explanation) {
    if (!word.starts_with(typed_)) return;
    lines_.append(word).append("\t").append(explanation).append("\n");
  }
  void addFiles() { lines_ += ":files\n"; }

  std::string take() { return std::move(lines_); }

 private:
  std::string_view typed_;
  std::string lines_;
};

/// An option's type name tells what it takes: words separated by bars, or a kind of file.
void addValues(Candidates& candidates, const CLI::Option& option, const std::string& before) {
  const std::string type = option.get_type_name();
  if (type == "ENTRY") {
    for (const char* word : {"timeline", "snapshot", "preview", "placeholder", "-"}) candidates.add(before + word, "");
  }
  if (type == "ENTRY" || type == "FILE" || type == "PATH") return candidates.addFiles();
  if (type.find('|') == std::string::npos) return;
  for (const auto word : absl::StrSplit(type, '|')) candidates.add(before + std::string(word), "");
}

const CLI::App* commandNamed(const CLI::App& app, const std::string& name) {
  for (const auto* each : app.get_subcommands({})) {
    if (each->get_name() == name) return each;
  }
  return nullptr;
}

bool takesValue(const CLI::Option& option) { return option.get_expected_max() > 0 && !option.get_positional(); }

}  // namespace

std::string completions(const CLI::App& app, const std::vector<std::string>& words) {
  const std::string typed = words.empty() ? std::string() : words.back();
  Candidates candidates(typed);
  const CLI::App* command = nullptr;
  const CLI::Option* awaiting = nullptr;  // an option whose value comes next
  const auto optionNamed = [&](const std::string& name) -> const CLI::Option* {
    if (const auto* const own = command == nullptr ? nullptr : command->get_option_no_throw(name)) return own;
    return app.get_option_no_throw(name);
  };
  for (std::size_t i = 0; i + 1 < words.size(); ++i) {
    if (awaiting != nullptr) {
      awaiting = nullptr;
    } else if (words[i].starts_with("--")) {
      const auto* const option = optionNamed(words[i]);
      if (option != nullptr && takesValue(*option)) awaiting = option;
    } else if (command == nullptr) {
      command = commandNamed(app, words[i]);
    }
  }

  if (awaiting != nullptr) {
    addValues(candidates, *awaiting, "");
  } else if (const auto equals = typed.find('='); typed.starts_with("--") && equals != std::string::npos) {
    const auto* const option = optionNamed(typed.substr(0, equals));
    if (option != nullptr && takesValue(*option)) addValues(candidates, *option, typed.substr(0, equals + 1));
  } else if (typed.starts_with('-')) {
    for (const CLI::App* from : {command, &app}) {
      if (from == nullptr) continue;
      for (const auto* option : from->get_options()) {
        const bool shared = from == &app && command != nullptr && command->get_option_no_throw(option->get_name());
        if (!option->get_positional() && !shared) candidates.add(option->get_name(), option->get_description());
      }
    }
  } else if (command == nullptr) {
    for (const auto* each : app.get_subcommands({})) candidates.add(each->get_name(), each->get_description());
  } else {
    for (const auto* option : command->get_options()) {
      if (option->get_positional()) addValues(candidates, *option, "");
    }
  }
  return candidates.take();
}

}  // namespace host
