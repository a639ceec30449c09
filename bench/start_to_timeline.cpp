// From the start of the extension to its answered timeline, beside programs that fetch the same three addresses as
// whole processes: curl alone, and two that select and sort the day as well. Two programs run in turn, so that what
// else the machine does affects both alike. Medians and ratios are printed, never a verdict.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <string>
#include <utility>
#include <vector>

#include "median.hpp"
#include "service_under_measure.hpp"
#include "trusted_store.hpp"

namespace bench {
namespace {

struct Series {
  std::vector<double> extensionWall, clientWall, extensionCpu, clientCpu, ratios;

  void add(const Measurement& extension, const Measurement& client) {
    extensionWall.push_back(extension.wallMs);
    clientWall.push_back(client.wallMs);
    extensionCpu.push_back(extension.cpuMs);
    clientCpu.push_back(client.cpuMs);
    ratios.push_back(extension.wallMs / client.wallMs);
  }
};

Series measure(const Command& extension, const Command& client, int pairs) {
  const std::string request = ServiceUnderMeasure::timelineRequest();
  // Once before, to warm the page cache and to see that both do what is measured.
  ServiceUnderMeasure::checkAnswer(untilAnswered(extension, request).line);
  untilEnded(client);
  Series series;
  for (int i = 0; i < pairs; ++i) {
    if (i % 2 == 0) {
      const Measurement first = untilAnswered(extension, request);
      series.add(first, untilEnded(client));
    } else {
      const Measurement first = untilEnded(client);
      series.add(untilAnswered(extension, request), first);
    }
  }
  return series;
}

void print(const char* name, const Series& series) {
  std::printf("%-44s %7.2f %7.2f %7.2f %9.2f %8.2f %8.2f\n", name, median(series.extensionWall),
              median(series.clientWall), median(series.ratios), median(series.extensionCpu), median(series.clientCpu),
              median(series.extensionCpu) / median(series.clientCpu));
  std::fflush(stdout);
}

void measureAll(const std::string& program, int pairs) {
  using enum support::NginxProtocol;
  std::printf("%d pairs, medians in ms             extension:  wall    peer   ratio       cpu     peer    ratio\n",
              pairs);
  const ServiceUnderMeasure plain(plainHttp1);
  print("http, beside curl", measure(plain.extension(program, {}), plain.client({}), pairs));
  print("http, beside curl and jq", measure(plain.extension(program, {}), plain.clientAndJq(), pairs));
  print("http, beside a Python script", measure(plain.extension(program, {}), plain.pythonScript(), pairs));

  const ServiceUnderMeasure http2(tlsHttp2);
  const ServiceUnderMeasure http1(tlsHttp1);
  const auto run = [&](const std::string& name, const ServiceUnderMeasure& service, const std::string& file) {
    print(name.c_str(), measure(service.extension(program, file), service.client(file), pairs));
  };
  for (const auto& [name, service] : {std::pair{"HTTP/2", &http2}, std::pair{"HTTP/1.1", &http1}}) {
    run(std::string("https, ") + name + ", trusting one CA's file", *service, service->server().authorityFile());
  }
  const support::TemporaryFolder folder;
  const TrustedStore store(folder.path("certs"), {http2.server().authorityFile(), http1.server().authorityFile()});
  for (const auto& [name, service] : {std::pair{"HTTP/2", &http2}, std::pair{"HTTP/1.1", &http1}}) {
    run(std::string("https, ") + name + ", trusting a bundle of all", *service, store.bundle());
  }
  if (!store.takeThePlaceOfTheSystems()) {
    std::printf("https, trusting the system's store: not measured, it needs a mount namespace\n");
    return;
  }
  for (const auto& [name, service] : {std::pair{"HTTP/2", &http2}, std::pair{"HTTP/1.1", &http1}}) {
    run(std::string("https, ") + name + ", trusting the system's store", *service, {});
    run(std::string("https, ") + name + ", the same bundle named", *service, "/etc/ssl/certs/ca-certificates.crt");
  }
}

}  // namespace
}  // namespace bench

int main(int argc, char** argv) try {
  std::string extension;
  int pairs = 200;
  for (int i = 1; i + 1 < argc; i += 2) {
    if (std::strcmp(argv[i], "--extension") == 0) extension = argv[i + 1];
    if (std::strcmp(argv[i], "--pairs") == 0) pairs = std::atoi(argv[i + 1]);
  }
  if (extension.empty() || pairs < 1) {
    std::fprintf(stderr, "usage: start-to-timeline --extension PROGRAM [--pairs NUMBER]\n");
    return 2;
  }
  bench::measureAll(extension, pairs);
} catch (const std::exception& error) {
  std::fprintf(stderr, "start-to-timeline: %s\n", error.what());
  return 1;
}
