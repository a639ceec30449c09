#include <cstdio>
#include <fstream>
#include <future>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "loading.hpp"
#include "support/environment.hpp"
#include "support/nginx_server.hpp"
#include "support/scripted_http_server.hpp"
#include "support/temporary_folder.hpp"
#include "support/test_certificates.hpp"
#include "support/waiting.hpp"

namespace platform {
namespace {

using Kind = TransportError::Kind;
using support::NginxProtocol;
using support::NginxServer;
using support::NginxSettings;
using support::ServerCertificate;

UrlSessionConfiguration trusting(const std::string& authorityFile) {
  auto configuration = patientConfiguration();
  configuration.trustedRootsFile = authorityFile;
  return configuration;
}

const std::map<std::string, std::string> bodies{{"/a", "[1]"}, {"/b", "[2]"}, {"/c", "[3]"}};

// One load of each body at once, as a board does it.
void loadAll(const UrlSession& session, const NginxServer& server) {
  std::vector<std::future<void>> loads;
  for (const auto& [path, body] : bodies) {
    loads.push_back(std::async(std::launch::async, [&session, &server, path, body] {
      UrlRequest request = requestFor(server.url(path));
      request.setValue("Bearer tok", "Authorization");
      EXPECT_EQ(summary(session.data(request)), "200 " + body) << server.errorLog();
    }));
  }
  for (auto& load : loads) load.get();
}

TEST(Tls, LoadsWithTheProtocolThatTheServerOffers) {
  struct Case {
    NginxProtocol offered;
    std::string spoken;
  };
  for (const auto& [offered, spoken] : std::vector<Case>{{NginxProtocol::plainHttp1, "HTTP/1.1"},
                                                         {NginxProtocol::tlsHttp1, "HTTP/1.1"},
                                                         {NginxProtocol::tlsHttp2, "HTTP/2.0"}}) {
    NginxServer server({.protocol = offered, .bodies = bodies, .requiredAuthorization = "Bearer tok"});
    const UrlSession session(trusting(server.authorityFile()));
    loadAll(session, server);
    const auto requests = server.endAndReadLog();
    ASSERT_EQ(requests.size(), 3U);
    for (const auto& request : requests) {
      EXPECT_EQ(request.protocol, spoken);
      EXPECT_EQ(request.authorization, "Bearer tok");
    }
  }
}

// The service behind nginx holds its answers until it has seen all three requests.
TEST(Tls, RequestsThatRunAtOnceShareOneHttp2Connection) {
  support::ScriptedHttpServer behind;
  const auto allAreThere = std::make_shared<support::Event>();
  for (const auto& [path, body] : bodies) {
    behind.script(path, {support::Await{allAreThere}, support::Send{support::HttpAnswer{200, body}.bytes()}});
  }
  NginxServer server({.directives = "    location / { proxy_http_version 1.1; proxy_pass " + behind.url() + "; }\n"});
  const UrlSession session(trusting(server.authorityFile()));
  std::jthread release([&] {
    EXPECT_TRUE(behind.waitForRequests(3));
    allAreThere->set();
  });
  loadAll(session, server);
  const auto requests = server.endAndReadLog();
  ASSERT_EQ(requests.size(), 3U);
  for (const auto& request : requests) EXPECT_EQ(request.connection, requests[0].connection);
}

/// Connections that are open at both ends.
int connectionsTo(std::uint16_t port) {
  std::ifstream table("/proc/net/tcp");
  int count = 0;
  for (std::string line; std::getline(table, line);) {
    unsigned remotePort = 0;
    unsigned state = 0;
    constexpr unsigned established = 1;
    if (std::sscanf(line.c_str(), " %*d: %*x:%*x %*x:%x %x", &remotePort, &state) == 2 && remotePort == port &&
        state == established) {
      ++count;
    }
  }
  return count;
}

// The server would keep an idle connection for an hour, so only the session can have closed it. A server that closes
// one sooner could lose a request that is sent on it.
TEST(Tls, KeepsNoConnectionThatTheServerMayClose) {
  for (const auto protocol : {NginxProtocol::tlsHttp1, NginxProtocol::tlsHttp2}) {
    NginxServer server({.protocol = protocol, .bodies = bodies, .directives = "    keepalive_timeout 1h;\n"});
    const UrlSession session(trusting(server.authorityFile()));
    for (int load = 0; load < 4; ++load) {
      loadAll(session, server);
      EXPECT_TRUE(support::eventually([&] { return connectionsTo(server.port()) == 0; }));
    }
    std::map<std::string, int> loads;
    const auto requests = server.endAndReadLog();
    ASSERT_EQ(requests.size(), 12U);
    for (std::size_t i = 0; i < requests.size(); ++i) {
      const int load = static_cast<int>(i / 3);
      EXPECT_EQ(loads.try_emplace(requests[i].connection, load).first->second, load) << "a connection of two loads";
    }
  }
}

TEST(Tls, RefusesAServerThatCannotBeTrusted) {
  const support::TestCertificates stranger;
  struct Case {
    std::string name;
    ServerCertificate certificate;
    bool knowsAuthority;
  };
  for (const auto& [name, certificate, knowsAuthority] :
       std::vector<Case>{{"unknown authority", ServerCertificate::valid, false},
                         {"expired", ServerCertificate::expired, true},
                         {"wrong host", ServerCertificate::wrongHost, true}}) {
    NginxServer server({.certificate = certificate, .bodies = bodies});
    const UrlSession session(trusting(knowsAuthority ? server.authorityFile() : stranger.authorityFile()));
    EXPECT_EQ(errorOf(session.data(requestFor(server.url("/a")))).kind, Kind::secureConnectionFailed) << name;
    EXPECT_TRUE(server.endAndReadLog().empty()) << name;
  }
}

TEST(Tls, FindsTheAuthorityInABundleOfMany) {
  for (const NginxProtocol offered : {NginxProtocol::tlsHttp1, NginxProtocol::tlsHttp2}) {
    NginxServer server({.protocol = offered, .bodies = bodies, .requiredAuthorization = "Bearer tok"});
    // The foreign authorities have the same name.
    const support::TestCertificates strangers[3];
    const support::TemporaryFolder folder;
    std::ofstream bundle(folder.path("bundle.pem"));
    for (const auto& stranger : strangers) bundle << std::ifstream(stranger.authorityFile()).rdbuf();
    bundle.close();
    const UrlSession without(trusting(folder.path("bundle.pem")));
    EXPECT_EQ(errorOf(without.data(requestFor(server.url("/a")))).kind, Kind::secureConnectionFailed);
    bundle.open(folder.path("bundle.pem"), std::ios::app);
    bundle << std::ifstream(server.authorityFile()).rdbuf();
    bundle.close();
    loadAll(UrlSession(trusting(folder.path("bundle.pem"))), server);
  }
}

TEST(Tls, TrustsTheFileOfTheEnvironmentInsteadOfTheSystemsRoots) {
  NginxServer server({.bodies = bodies});
  support::ScopedEnvironment environment;
  environment.unset("SSL_CERT_FILE");
  const UrlSession system(UrlSessionConfiguration::ephemeral());
  EXPECT_EQ(errorOf(system.data(requestFor(server.url("/a")))).kind, Kind::secureConnectionFailed);
  environment.set("SSL_CERT_FILE", server.authorityFile());
  const UrlSession chosen(UrlSessionConfiguration::ephemeral());
  EXPECT_EQ(summary(chosen.data(requestFor(server.url("/a")))), "200 [1]");
  environment.set("SSL_CERT_FILE", "/nonexistent.pem");
  const UrlSession missing(UrlSessionConfiguration::ephemeral());
  EXPECT_EQ(errorOf(missing.data(requestFor(server.url("/a")))).kind, Kind::secureConnectionFailed);
}

TEST(Tls, CarriesAValueThatEndsInALineEndOverHttp1Only) {
  for (const std::string token : {"tok\n", "tok\r\n", "tok\r"}) {
    for (const auto protocol : {NginxProtocol::tlsHttp1, NginxProtocol::tlsHttp2}) {
      NginxServer server({.protocol = protocol, .bodies = bodies});
      const UrlSession session(trusting(server.authorityFile()));
      UrlRequest request = requestFor(server.url("/a"));
      request.setValue("Bearer " + token, "Authorization");
      request.setValue("application/json", "Accept");
      const auto loaded = session.data(request);
      if (protocol == NginxProtocol::tlsHttp2) {
        EXPECT_EQ(errorOf(loaded).kind, Kind::badHeader);
        EXPECT_TRUE(server.endAndReadLog().empty());
      } else {
        EXPECT_EQ(summary(loaded), "200 [1]") << server.errorLog();
        const auto requests = server.endAndReadLog();
        ASSERT_EQ(requests.size(), 1U);
        EXPECT_EQ(requests[0].authorization.substr(0, 10), "Bearer tok");
      }
    }
  }
}

TEST(Tls, EndsWithoutATransferWhenTheProxyRefusesTheTunnel) {
  NginxServer server({.bodies = bodies});
  support::ScriptedHttpServer proxy;
  proxy.answer("*", {403, "no"});
  support::ScopedEnvironment environment;
  environment.set("https_proxy", proxy.url());
  environment.set("no_proxy", "");
  const UrlSession session(trusting(server.authorityFile()));
  const auto loaded = session.data(requestFor(server.url("/a")));
  EXPECT_FALSE(loaded) << summary(loaded);
  EXPECT_TRUE(server.endAndReadLog().empty());
}

TEST(Http2, AnswerThatIsCutIsATransportError) {
  support::ScriptedHttpServer behind;
  const std::string begun = "HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nbody";
  const std::string chunk = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n4\r\nbody\r\n";
  behind.script("/length", {support::Send{begun}, support::Close{}});
  behind.script("/chunk", {support::Send{chunk}, support::Close{}});
  NginxServer server({.directives = "    location / { proxy_http_version 1.1; proxy_pass " + behind.url() +
                                    "; }\n    location = /none { return 444; }\n"});
  const UrlSession session(trusting(server.authorityFile()));
  for (const std::string path : {"/length", "/chunk", "/none"}) {
    const auto loaded = session.data(requestFor(server.url(path)));
    EXPECT_FALSE(loaded) << path << ": " << summary(loaded);
  }
  EXPECT_EQ(behind.requests().size(), 2U) << "a request was sent twice";
}

}  // namespace
}  // namespace platform
