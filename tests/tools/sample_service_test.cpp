#include "sample_service/sample_service.hpp"

#include <array>
#include <csignal>
#include <cstdio>
#include <fstream>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <httplib.h>
#include <netinet/in.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/waiting.hpp"

namespace sample {
namespace {

struct Reply {
  int status = 0;
  std::string body;
};

Reply get(const std::string& address, const std::string& path, const std::string& token) {
  const std::string origin = address.substr(0, address.size() - 4);  // without /api
  httplib::Client client(origin);
  client.set_bearer_token_auth(token);
  const auto result = client.Get("/api" + path);
  return result ? Reply{result->status, result->body} : Reply{};
}

TEST(SampleService, AnswersTheThreeResourcesToItsToken) {
  const auto service = Service::start({.token = "sezam"});
  ASSERT_TRUE(service) << service.error();
  for (const char* path : {"/moje/zadania", "/skrzynka", "/spotkania-planowane"}) {
    const Reply reply = get((*service)->address(), path, "sezam");
    EXPECT_EQ(reply.status, 200) << path;
    EXPECT_NE(reply.body.find("tytul"), std::string::npos) << path;
  }
  EXPECT_EQ(get((*service)->address(), "/inne", "sezam").status, 404);
}

TEST(SampleService, RefusesAnotherToken) {
  const auto service = Service::start({.token = "sezam"});
  ASSERT_TRUE(service) << service.error();
  EXPECT_EQ(get((*service)->address(), "/skrzynka", "sezamek").status, 401);
  EXPECT_EQ(get((*service)->address(), "/skrzynka", "").status, 401);
}

TEST(SampleService, PlaysEachFault) {
  const struct {
    Fault fault;
    int status;
  } kCases[] = {{Fault::Unauthorized, 401}, {Fault::ServerError, 500}, {Fault::Malformed, 200}};
  for (const auto& [fault, status] : kCases) {
    const auto service = Service::start({.token = "sezam", .fault = fault});
    ASSERT_TRUE(service) << service.error();
    const Reply reply = get((*service)->address(), "/moje/zadania", "sezam");
    EXPECT_EQ(reply.status, status);
    if (fault == Fault::Malformed) {
      EXPECT_FALSE(reply.body.ends_with(']'));
    }
  }
}

TEST(SampleService, SaysWhenThePortIsTaken) {
  const auto first = Service::start({.token = "a"});
  ASSERT_TRUE(first) << first.error();
  const std::string address = (*first)->address();
  const int port = std::stoi(address.substr(address.rfind(':') + 1));
  const auto second = Service::start({.port = port, .token = "b"});
  ASSERT_FALSE(second);
  EXPECT_NE(second.error().find(std::to_string(port)), std::string::npos);
}

/// A request that has been sent as it is, and whose answer may come later.
class SentRequest {
 public:
  SentRequest(std::uint16_t port, const std::string& text) : port_(port) {
    sockaddr_in server{};
    server.sin_family = AF_INET;
    server.sin_port = htons(port);
    server.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    EXPECT_EQ(::connect(socket_, reinterpret_cast<const sockaddr*>(&server), sizeof server), 0);
    EXPECT_EQ(::send(socket_, text.data(), text.size(), 0), static_cast<ssize_t>(text.size()));
  }
  SentRequest(const SentRequest&) = delete;
  SentRequest& operator=(const SentRequest&) = delete;
  ~SentRequest() { ::close(socket_); }

  /// Whether the server's program has read all of it: its system has received it, the connection was accepted, which
  /// gives it an inode, and nothing waits to be read.
  bool isRead() const {
    int unacknowledged = 0;
    if (::ioctl(socket_, TIOCOUTQ, &unacknowledged) != 0 || unacknowledged > 0) {
      return false;
    }
    std::ifstream table("/proc/net/tcp");
    for (std::string line; std::getline(table, line);) {
      unsigned port = 0;
      unsigned state = 0;
      unsigned unread = 0;
      unsigned long inode = 0;
      constexpr unsigned established = 1;
      if (std::sscanf(line.c_str(), " %*d: %*x:%x %*x:%*x %x %*x:%x %*s %*s %*s %*s %lu", &port, &state, &unread,
                      &inode) == 4 &&
          port == port_ && state == established) {
        return inode != 0 && unread == 0;
      }
    }
    return false;
  }

  /// All that comes until the server closes the connection.
  std::string answer() const {
    std::string text;
    std::array<char, 4096> buffer;
    for (ssize_t count = 0; (count = ::recv(socket_, buffer.data(), buffer.size(), 0)) > 0;) {
      text.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return text;
  }

 private:
  std::uint16_t port_;
  int socket_ = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
};

// The program with standard input and output on pipes. It also ends with the thread that started it.
class Program {
 public:
  explicit Program(std::vector<std::string> arguments) {
    std::array<int, 2> input{};
    std::array<int, 2> output{};
    EXPECT_EQ(::pipe2(input.data(), O_CLOEXEC), 0);
    EXPECT_EQ(::pipe2(output.data(), O_CLOEXEC), 0);
    std::vector<char*> argv;
    arguments.insert(arguments.begin(), SAMPLE_SERVICE_PROGRAM);
    for (std::string& argument : arguments) {
      argv.push_back(argument.data());
    }
    argv.push_back(nullptr);
    const pid_t parent = ::getpid();
    pid_ = ::fork();
    if (pid_ == 0) {
      ::prctl(PR_SET_PDEATHSIG, SIGKILL);
      if (::getppid() != parent) {
        ::_exit(127);
      }
      ::dup2(input[0], STDIN_FILENO);
      ::dup2(output[1], STDOUT_FILENO);
      ::execv(SAMPLE_SERVICE_PROGRAM, argv.data());
      ::_exit(127);
    }
    ::close(input[0]);
    ::close(output[1]);
    input_ = input[1];
    output_ = output[0];
  }
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;
  ~Program() {
    if (pid_ > 0) {
      ::kill(pid_, SIGKILL);
      waitForStatus();
    }
    closeInput();
    ::close(output_);
  }

  std::string line() {
    std::string text;
    for (char byte = 0; ::read(output_, &byte, 1) == 1 && byte != '\n';) {
      text += byte;
    }
    return text;
  }

  void closeInput() {
    if (input_ >= 0) {
      ::close(std::exchange(input_, -1));
    }
  }

  void send(int signal) const { ::kill(pid_, signal); }

  int waitForStatus() {
    int status = -1;
    ::waitpid(pid_, &status, 0);
    pid_ = -1;
    return status;
  }

 private:
  pid_t pid_ = -1;
  int input_ = -1;
  int output_ = -1;
};

TEST(SampleServiceProgram, PrintsAddressAndTokenThenEndsCleanlyOnASignal) {
  for (const int signal : {SIGTERM, SIGINT}) {
    Program program({});
    const std::string address = program.line();
    const std::string token = program.line();
    EXPECT_TRUE(address.starts_with("http://127.0.0.1:") && address.ends_with("/api")) << address;
    EXPECT_EQ(token.size(), 32u);
    EXPECT_EQ(get(address, "/skrzynka", token).status, 200);
    program.send(signal);
    EXPECT_EQ(program.waitForStatus(), 0);
  }
}

TEST(SampleServiceProgram, KeepsAGivenTokenToItself) {
  Program program({"--token", "sezam", "--day", "empty"});
  const std::string address = program.line();
  EXPECT_EQ(get(address, "/moje/zadania", "sezam").body, "[]");
  program.send(SIGTERM);
  EXPECT_EQ(program.line(), "");  // the end of its output: no second line came
  EXPECT_EQ(program.waitForStatus(), 0);
}

TEST(SampleServiceProgram, EndsASlowAnswerWhenStandardInputEnds) {
  Program program({"--until-input-ends", "--fault", "slow"});
  const std::string address = program.line();
  const std::string token = program.line();
  const auto port = address.substr(address.rfind(':') + 1, address.rfind('/') - address.rfind(':') - 1);
  const SentRequest request(static_cast<std::uint16_t>(std::stoi(port)),
                            "GET /api/skrzynka HTTP/1.1\r\nHost: 127.0.0.1\r\nAuthorization: Bearer " + token +
                                "\r\nConnection: close\r\n\r\n");
  EXPECT_TRUE(support::eventually([&] { return request.isRead(); }));
  program.closeInput();
  EXPECT_EQ(program.waitForStatus(), 0);
  EXPECT_TRUE(request.answer().starts_with("HTTP/1.1 200 "));
}

TEST(SampleServiceProgram, RefusesAWrongCommandLineWithStatusTwo) {
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"--day", "unknown"}, {"--port", "70000"}, {"--what"}, {"extra"}}) {
    Program program(arguments);
    const int status = program.waitForStatus();
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 2) << arguments.front();
  }
}

}  // namespace
}  // namespace sample
