#include <array>
#include <chrono>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>
#include <sys/mman.h>
#include <unistd.h>

#include "base/descriptors/file_descriptor.hpp"
#include "base/json/json_text.hpp"
#include "host/command_line/outcome.hpp"
#include "host/command_line/programs.hpp"
#include "host/commands/commands.hpp"
#include "host/commands/output.hpp"
#include "host/credentials/credential_store.hpp"
#include "host/doctor/environment_findings.hpp"
#include "host/doctor/session_findings.hpp"
#include "host/extension/extension_client.hpp"
#include "host/programs/ask_program.hpp"
#include "protocol/view_tree/widget_family.hpp"

namespace host {
namespace {

constexpr auto boardFamily = protocol::WidgetFamily::systemMedium;
/// The extension itself gives up a load after 12 s.
constexpr absl::Duration longestLoad = absl::Seconds(15);
constexpr absl::Duration longestQuestion = absl::Seconds(10);

// How the extension says which rights it has given up (docs/protocol.md).
constexpr std::string_view gaveUpAll = "has given up all rights that it does not need";
constexpr std::string_view goesOnWithout = "goes on without a restriction: ";

bool isAboutRights(std::string_view line) { return line == gaveUpAll || line.starts_with(goesOnWithout); }

/// What the extension writes on standard error, kept in memory.
class Overheard {
 public:
  Overheard() : file_(memfd_create("vamba-doctor", MFD_CLOEXEC)) {}
  int descriptor() const { return file_.get(); }

  /// Without the extension's name in front.
  std::vector<std::string> lines() const {
    std::array<char, std::size_t{32} << 10> bytes;
    const ssize_t count = file_.isOpen() ? ::pread(file_.get(), bytes.data(), bytes.size(), 0) : 0;
    std::string_view text(bytes.data(), count > 0 ? static_cast<std::size_t>(count) : 0);
    std::vector<std::string> result;
    while (!text.empty()) {
      const auto end = text.find('\n');
      std::string_view line = text.substr(0, end);
      text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
      constexpr std::string_view name = "vamba-widzety: ";
      if (line.starts_with(name)) line.remove_prefix(name.size());
      if (!line.empty()) result.emplace_back(line);
    }
    return result;
  }

  /// The cause that it told last; empty where there is none.
  std::string lastCause() const {
    auto causes = lines();
    std::erase_if(causes, isAboutRights);
    return causes.empty() ? std::string() : causes.back();
  }

 private:
  base::FileDescriptor file_;
};

constexpr const char* signInAgain = "Sign in with a new token: \"vamba-host sign-in\".";

/// What to do about the cause of a failed load, as the extension words it.
std::string adviceFor(std::string_view cause) {
  struct Advice {
    std::string_view word;
    const char* advice;
  };
  static constexpr std::array advices{
      Advice{"certificate",
             "Check the machine's date. For a service with an authority of its own, name that authority's "
             "file in SSL_CERT_FILE."},
      Advice{"SSL", "The address may be of a server without TLS: check whether it begins with http or https."},
      Advice{"resolve", "Check the network, and the host name of the address."},
      Advice{"connect to", "Check that the service runs, and the network, firewall and proxy between."},
      Advice{"no answer in time", "The network or the service is too slow; try again later."},
      Advice{"malformed", "The address leads to another program, or to another version of the service; check it."},
      Advice{"status 5", "The service reported an internal error; try again later, or tell its operator."},
      Advice{"status 401", signInAgain},  // of a token that could not be removed
      Advice{"status 4", "The path of the address may be wrong; check it."},
      Advice{"not a URL", "Give the right address with \"vamba-host sign-in --address URL\"."},
  };
  for (const auto& [word, advice] : advices) {
    if (cause.find(word) != std::string_view::npos) return advice;
  }
  return "Check the network and the address; \"vamba-host show --verbose\" tells more.";
}

/// Writes each finding as soon as it is there, and counts.
class Report {
 public:
  void add(const Finding& finding) {
    if (finding.verdict == Verdict::fault) ++faults_;
    print(inWords(finding));
  }

  CommandResult end() {
    const std::string count = faults_ == 1 ? "One fault keeps" : std::to_string(faults_) + " faults keep";
    print(faults_ == 0 ? "\nAll that the widget needs works.\n"
                       : "\n" + count + " the widget from showing your day.\n");
    if (!written_) return std::unexpected(CommandFailure{exit_status::noAnswer, written_.error()});
    return CommandDone{faults_ == 0 ? exit_status::shown : exit_status::noAnswer};
  }

 private:
  void print(const std::string& text) {
    if (written_) written_ = writeStandardOutput(text);
  }

  int faults_ = 0;
  std::expected<void, std::string> written_;
};

/// The extension's program, and its declarations.
struct Extension {
  Finding finding;
  std::string kind;  ///< of its widget; empty where it cannot be asked
};

Extension examine(ExtensionClient& client, const std::filesystem::path& program, const Overheard& overheard) {
  Finding finding{.subject = "extension", .verdict = Verdict::fault};
  const auto declared = client.widgetsJson();
  if (!declared) {
    finding.what = declared.error().message;
    // Such as the name of a library that is missing.
    if (const auto said = overheard.lastCause(); !said.empty()) finding.what += ": " + said;
    finding.advice = declared.error().kind == ExtensionFailure::Kind::cannotStart
                         ? "Install the widget again, or name the extension's program with --extension."
                         : "The program is damaged or is no extension; install the widget again.";
    return {finding, {}};
  }
  std::string kind;
  std::string version = "of a protocol without a version";
  for (const auto& widget : *declared) {
    if (!kind.empty()) break;
    kind = widget.at("kind").get<std::string>();
    if (widget.contains("version")) version = "protocol version " + base::toPrintableText(widget["version"]);
  }
  if (kind.empty()) {
    finding.what = program.string() + " offers no widget";
    finding.advice = "Name the extension's program with --extension, or install the widget again.";
    return {finding, {}};
  }
  finding.verdict = Verdict::works;
  finding.what = program.string() + ", " + version;
  return {finding, kind};
}

Finding requestFinding(ExtensionClient& client, const std::string& kind, CredentialStore& store,
                       const Overheard& overheard) {
  Finding finding{.subject = "request", .verdict = Verdict::fault};
  const auto begin = std::chrono::steady_clock::now();
  const auto timeline = client.timeline(kind, boardFamily);
  const auto took = std::chrono::steady_clock::now() - begin;
  if (!timeline) {
    finding.what = timeline.error().message;
    finding.advice = "Install the widget again; if that does not help, report it with this line.";
    return finding;
  }
  const auto& entry = timeline->entries.front();
  if (entry.holds == BoardHolds::day) {
    const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(took).count();
    return {.subject = "request",
            .what = "the service answered with your day in " + std::to_string(milliseconds) + " ms"};
  }
  if (const auto token = store.find(tokenAccount); token && !*token) {
    finding.what = "the service refused the token (status 401), and the widget has removed it";
    finding.advice = signInAgain;
    return finding;
  }
  const auto parsed = base::parseJson(entry.json);
  const std::string cause = overheard.lastCause();
  finding.what = cause.empty() && parsed ? parsed->value("blad", "") : cause;
  finding.advice = adviceFor(finding.what);
  return finding;
}

/// Which rights the extension has given up, as it tells itself; another extension need not.
Finding rightsFinding(const Overheard& overheard) {
  Finding finding{.subject = "rights",
                  .verdict = Verdict::note,
                  .what = "the extension does not say whether it has given up those that it does not need"};
  std::string missing;
  for (const auto& line : overheard.lines()) {
    if (line == gaveUpAll) return {.subject = "rights", .what = "the extension " + line};
    if (line.starts_with(goesOnWithout)) missing += (missing.empty() ? "" : "; ") + line.substr(goesOnWithout.size());
  }
  if (missing.empty()) return finding;
  finding.what = "the extension " + std::string(goesOnWithout) + missing;
  if (missing.find("Landlock") != std::string::npos) {
    finding.advice = "The widget works without it. Linux has Landlock since 5.13, unless it is turned off at boot.";
  }
  return finding;
}

Finding fontsFinding() {
  const auto program = libexecProgram("vamba-picture");
  std::error_code error;
  if (!std::filesystem::exists(program, error)) {
    return {.subject = "fonts", .verdict = Verdict::note, .what = "pictures are not installed"};
  }
  const auto font = askProgram(program, {"doctor"}, longestQuestion);
  if (!font) {
    return {.subject = "fonts",
            .verdict = Verdict::note,
            .what = font.error(),
            .advice = "Pictures and the desktop need a font; install fonts-inter."};
  }
  const bool meant = font->starts_with("Inter");
  return {.subject = "fonts",
          .verdict = meant ? Verdict::works : Verdict::note,
          .what = meant ? *font : *font + ", since Inter is not installed",
          .advice = meant ? "" : "Install fonts-inter to see boards as they are meant."};
}

Finding displayFinding() {
  const auto program = libexecProgram("vamba-desktop");
  std::error_code error;
  if (!std::filesystem::exists(program, error)) {
    return {.subject = "display", .verdict = Verdict::note, .what = "the desktop's widgets are not installed"};
  }
  const auto way = askProgram(program, {"doctor"}, longestQuestion);
  if (!way) return {.subject = "display", .verdict = Verdict::note, .what = way.error()};
  if (*way == "no display") {
    return {.subject = "display",
            .verdict = Verdict::note,
            .what = "neither WAYLAND_DISPLAY nor DISPLAY names one; boards are shown in the terminal alone"};
  }
  return {.subject = "display", .what = *way};
}

}  // namespace

CommandResult doctor(const CommandLine& line) {
  Report report;
  CredentialStore store;
  const Overheard overheard;
  const auto program = extensionProgram(line);
  ExtensionClient client({.program = program,
                          .loadDeadline = longestLoad,
                          .diagnostics = overheard.descriptor(),
                          .environment = {"VAMBA_VERBOSE=1"}});

  report.add({.subject = "host", .what = "vamba-host " + std::string(hostVersion()) + ", " + programPath().string()});
  const auto extension = examine(client, program, overheard);
  report.add(extension.finding);
  report.add(languageFinding());
  report.add(zoneFinding());
  report.add(keychainFinding(store));
  const auto token = tokenFinding(store);
  report.add(token);
  const auto address = addressFinding(store);
  report.add(address.finding);
  report.add(address.encrypted ? certificatesFinding()
                               : Finding{.subject = "certificates", .what = "not needed for an address without https"});
  const bool possible = !extension.kind.empty() && token.verdict != Verdict::fault;
  if (!possible || address.finding.verdict == Verdict::fault) {
    report.add({.subject = "request",
                .verdict = Verdict::note,
                .what = "not made: it needs the extension, a token and an address"});
  } else {
    report.add(requestFinding(client, extension.kind, store, overheard));
  }
  client.stop();  // all that it wrote has been read then
  report.add(rightsFinding(overheard));
  report.add(secretServiceFinding(store));
  report.add(displayFinding());
  report.add(portalFinding());
  report.add(fontsFinding());
  return report.end();
}

}  // namespace host
