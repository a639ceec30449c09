// vamba-sample-service: a service on loopback with a sample day, for trying the widget out and for tests.
#include <array>
#include <csignal>
#include <cstdio>
#include <iostream>
#include <map>

#include <CLI/CLI.hpp>
#include <poll.h>
#include <sys/random.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include "platform/languages/preferred_languages.hpp"
#include "sample_service.hpp"

namespace {

constexpr int kWrongCommandLine = 2;

const std::map<std::string, sample::Day> kDays = {
    {"full", sample::Day::Full}, {"busy", sample::Day::Busy}, {"empty", sample::Day::Empty}};
const std::map<std::string, sample::Fault> kFaults = {{"none", sample::Fault::None},
                                                      {"slow", sample::Fault::Slow},
                                                      {"unauthorized", sample::Fault::Unauthorized},
                                                      {"server-error", sample::Fault::ServerError},
                                                      {"malformed", sample::Fault::Malformed}};

const std::map<std::string, sample::Language> kLanguages = {
    {"pl", sample::Language::Polish}, {"en", sample::Language::English}, {"lt", sample::Language::Lithuanian}};

// As the widget chooses it: the first preferred language alone decides.
sample::Language languageOfTheEnvironment() {
  const auto preferred = platform::preferredLanguages();
  const auto found = kLanguages.find(preferred.empty() ? "" : platform::primarySubtag(preferred.front()));
  return found == kLanguages.end() ? sample::Language::Polish : found->second;
}

std::string randomToken() {
  std::array<unsigned char, 16> bytes{};
  if (::getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) {
    return {};
  }
  std::string text;
  for (const unsigned char byte : bytes) {
    constexpr auto kDigits = "0123456789abcdef";
    text += kDigits[byte >> 4];
    text += kDigits[byte & 0xF];
  }
  return text;
}

// Every thread is started with these blocked, so that only the signal descriptor hears them.
int signalDescriptor() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGTERM);
  sigaddset(&signals, SIGHUP);
  ::sigprocmask(SIG_BLOCK, &signals, nullptr);
  ::signal(SIGPIPE, SIG_IGN);
  return ::signalfd(-1, &signals, SFD_CLOEXEC);
}

bool standardInputEnded() {
  std::array<char, 256> ignored{};
  return ::read(STDIN_FILENO, ignored.data(), ignored.size()) <= 0;
}

void waitForEnd(int signals, bool untilInputEnds) {
  std::array<pollfd, 2> sources{{{signals, POLLIN, 0}, {untilInputEnds ? STDIN_FILENO : -1, POLLIN, 0}}};
  while (true) {
    if (::poll(sources.data(), sources.size(), -1) < 0) {
      continue;  // EINTR: stopped and continued
    }
    if (sources[0].revents != 0 || (sources[1].revents != 0 && standardInputEnded())) {
      return;
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  sample::Settings settings;
  settings.language = languageOfTheEnvironment();
  bool untilInputEnds = false;

  CLI::App app{
      "A service on loopback with a sample day of tasks, meetings and inbox items, dated from now.\n"
      "Prints its base address once it listens, then, unless --token names one, the token it asks for.\n"
      "Ends on SIGINT, SIGTERM or SIGHUP.",
      "vamba-sample-service"};
  app.set_version_flag("--version", VAMBA_VERSION);
  app.add_option("--port", settings.port, "port of 127.0.0.1; 0, the default, takes a free one")
      ->check(CLI::Range(0, 65535));
  app.add_option("--token", settings.token, "bearer token to ask for (default: a new random one)");
  app.add_option("--day", settings.day, "full (default), busy (more than fits, awkward titles) or empty")
      ->transform(CLI::Transformer(kDays).description(""))
      ->option_text("NAME");
  app.add_option(
         "--fault", settings.fault,
         "none (default), slow (5 s an answer), unauthorized (401), server-error (500), malformed (broken JSON)")
      ->transform(CLI::Transformer(kFaults).description(""))
      ->option_text("NAME");
  app.add_option("--language", settings.language, "of titles: pl, en or lt (default: the environment's, else pl)")
      ->transform(CLI::Transformer(kLanguages).description(""))
      ->option_text("NAME");
  app.add_flag("--until-input-ends", untilInputEnds, "end with standard input too, so as not to outlive the starter");
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : kWrongCommandLine;
  }

  const bool ownToken = settings.token.empty();
  if (ownToken) {
    settings.token = randomToken();
  }
  const std::string token = settings.token;
  const int signals = signalDescriptor();
  const auto service = sample::Service::start(std::move(settings));
  if (!service || token.empty() || signals < 0) {
    std::cerr << "vamba-sample-service: " << (service ? "the system gives no random bytes or signals" : service.error())
              << '\n';
    return 1;
  }
  std::cout << (*service)->address() << '\n';
  if (ownToken) {
    std::cout << token << '\n';
  }
  std::cout.flush();
  waitForEnd(signals, untilInputEnds);
  return 0;
}
