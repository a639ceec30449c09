#include "sample_service.hpp"

#include <chrono>
#include <condition_variable>
#include <ctime>
#include <mutex>
#include <thread>
#include <utility>

#include <httplib.h>

namespace sample {
namespace {

constexpr auto kHost = "127.0.0.1";
constexpr auto kJson = "application/json";
constexpr std::chrono::seconds kSlow{5};

class HttpService final : public Service {
 public:
  explicit HttpService(Settings settings) : settings_(std::move(settings)) {
    // A connection that idles holds the end of the program up for as long.
    server_.set_keep_alive_timeout(1);
    server_.set_keep_alive_max_count(10'000);
    server_.set_socket_options([](socket_t socket) {
      // The library's own choice, SO_REUSEPORT, would let two services share a port.
      const int yes = 1;
      ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    });
    server_.set_pre_routing_handler([this](const httplib::Request& request, httplib::Response& response) {
      return refuse(request, response) ? httplib::Server::HandlerResponse::Handled
                                       : httplib::Server::HandlerResponse::Unhandled;
    });
    serve("/api/moje/zadania", &Answers::zadania);
    serve("/api/skrzynka", &Answers::skrzynka);
    serve("/api/spotkania-planowane", &Answers::spotkania);
    server_.set_error_handler([](const httplib::Request&, httplib::Response& response) {
      if (response.body.empty()) {
        response.set_content(R"({"blad":"Nie ma takiego zasobu."})", kJson);
      }
    });
  }

  HttpService(const HttpService&) = delete;
  HttpService& operator=(const HttpService&) = delete;

  ~HttpService() override {
    {
      const std::lock_guard lock(mutex_);
      ending_ = true;
    }
    ended_.notify_all();
    if (listener_.joinable()) {
      server_.stop();
      listener_.join();
    }
  }

  bool listen() {
    port_ = settings_.port == 0 ? server_.bind_to_any_port(kHost)
                                : (server_.bind_to_port(kHost, settings_.port) ? settings_.port : -1);
    if (port_ <= 0) {
      return false;
    }
    listener_ = std::thread([this] { server_.listen_after_bind(); });
    // The socket listens since bind, but stop() is heard only by a server that runs.
    while (!server_.is_running()) {
      std::this_thread::yield();
    }
    return true;
  }

  std::string address() const override { return "http://" + std::string(kHost) + ":" + std::to_string(port_) + "/api"; }

 private:
  void serve(const char* path, std::string Answers::* part) {
    server_.Get(path, [this, part](const httplib::Request&, httplib::Response& response) {
      std::string body = answersFor(settings_.day, std::time(nullptr), settings_.language).*part;
      if (settings_.fault == Fault::Malformed) {
        body.pop_back();
      }
      response.set_content(body, kJson);
    });
  }

  bool refuse(const httplib::Request& request, httplib::Response& response) {
    if (settings_.fault == Fault::Slow) {
      std::unique_lock lock(mutex_);
      ended_.wait_for(lock, kSlow, [this] { return ending_; });
    }
    if (settings_.fault == Fault::ServerError) {
      response.status = 500;
      response.set_content(R"({"blad":"Awaria na niby."})", kJson);
      return true;
    }
    if (settings_.fault == Fault::Unauthorized ||
        request.get_header_value("Authorization") != "Bearer " + settings_.token) {
      response.status = 401;
      response.set_header("WWW-Authenticate", "Bearer");
      response.set_content(R"({"blad":"Nieznane poświadczenie."})", kJson);
      return true;
    }
    return false;
  }

  const Settings settings_;
  httplib::Server server_;
  int port_ = 0;
  std::thread listener_;

  std::mutex mutex_;
  std::condition_variable ended_;
  bool ending_ = false;
};

}  // namespace

std::expected<std::unique_ptr<Service>, std::string> Service::start(Settings settings) {
  const int port = settings.port;
  auto service = std::make_unique<HttpService>(std::move(settings));
  if (!service->listen()) {
    return std::unexpected("cannot listen on port " + std::to_string(port) + " of " + kHost);
  }
  return service;
}

}  // namespace sample
