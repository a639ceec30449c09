#include "support/nginx_server.hpp"

#include <fstream>
#include <sstream>

#include <sys/socket.h>
#include <unistd.h>

#include "support/file_content.hpp"

namespace support {
namespace {

std::string locations(const NginxSettings& settings, const TemporaryFolder& folder) {
  std::string text;
  int number = 0;
  for (const auto& [path, body] : settings.bodies) {
    const std::string file = "body" + std::to_string(number++);
    folder.write(file, body);
    text += "    location = \"" + path + "\" {\n";
    if (settings.requiredAuthorization) {
      text += "      if ($http_authorization != \"" + *settings.requiredAuthorization + "\") { return 401; }\n";
    }
    text += "      default_type application/json;\n      alias \"" + folder.path(file) + "\";\n    }\n";
  }
  return text;
}

}  // namespace

NginxServer::NginxServer(const NginxSettings& settings) {
  if (settings.protocol != NginxProtocol::plainHttp1) certificates_.emplace(settings.certificate);
  // nginx takes over a socket that already listens, as it does from its predecessor in an upgrade: no port can be lost
  // to another program, and no client can come too early.
  const LoopbackListener listener = LoopbackListener::open(SOMAXCONN);
  port_ = listener.port;
  folder_.write("nginx.conf", configuration(settings));
  process_.emplace("nginx", "nginx-light",
                   std::vector<std::string>{"-c", folder_.path("nginx.conf"), "-e", folder_.path("error.log")},
                   folder_.path("output.log"), listener.socket.get(), std::vector<std::string>{"NGINX=3;"});
}

std::string NginxServer::url(const std::string& path) const {
  return (certificates_ ? "https://127.0.0.1:" : "http://127.0.0.1:") + std::to_string(port_) + path;
}

std::string NginxServer::configuration(const NginxSettings& settings) const {
  // One worker below a master: nginx without a master crashes when it takes a socket over. As root the worker must stay
  // root to read the test's folder.
  std::string text = "daemon off;\nworker_processes 1;\npid \"" + folder_.path("pid") + "\";\n";
  if (geteuid() == 0) text += "user root root;\n";
  text += "events {}\nhttp {\n";
  for (const std::string kind : {"client_body", "proxy", "fastcgi", "uwsgi", "scgi"}) {
    text += "  " + kind + "_temp_path \"" + folder_.path(kind) + "\";\n";
  }
  text +=
      "  log_format tabs escape=json '$server_protocol\\t$connection\\t$status\\t$request_uri\\t$http_authorization';\n"
      "  access_log \"" +
      folder_.path("access.log") + "\" tabs;\n";
  text += "  server {\n    listen 127.0.0.1:" + std::to_string(port_);
  if (certificates_) text += " ssl";
  if (settings.protocol == NginxProtocol::tlsHttp2) text += " http2";
  text += ";\n";
  if (certificates_) {
    text += "    ssl_certificate \"" + certificates_->certificateFile() + "\";\n    ssl_certificate_key \"" +
            certificates_->keyFile() + "\";\n";
  }
  return text + settings.directives + locations(settings, folder_) + "  }\n}\n";
}

std::vector<NginxRequest> NginxServer::endAndReadLog() {
  process_->end();
  std::ifstream log(folder_.path("access.log"));
  std::vector<NginxRequest> requests;
  for (std::string line; std::getline(log, line);) {
    std::istringstream fields(line);
    NginxRequest request;
    for (std::string* field :
         {&request.protocol, &request.connection, &request.status, &request.target, &request.authorization}) {
      std::getline(fields, *field, '\t');
    }
    requests.push_back(std::move(request));
  }
  return requests;
}

std::string NginxServer::errorLog() const {
  std::string text;
  for (const std::string name : {"output.log", "error.log"}) {
    text += contentOf(folder_.path(name));
  }
  return text;
}

}  // namespace support
