// What another process can learn of the token that the extension holds, and what the extension itself leaves of it.
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fstream>
#include <iterator>
#include <sstream>

#include <fcntl.h>
#include <grp.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "end_to_end/extension_fixture.hpp"
#include "platform/sandbox/least_rights.hpp"
#include "support/system_call_faults.hpp"

namespace end_to_end {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Not;

/// A program with its standard input in the hands of the process that started it, which is another user's than root.
class Started {
 public:
  explicit Started(const std::string& program) {
    int input[2];
    int output[2];
    if (pipe(input) != 0 || pipe(output) != 0) return;
    const pid_t parent = getpid();
    process_ = fork();
    if (process_ == 0) {
      prctl(PR_SET_PDEATHSIG, SIGKILL);
      if (getppid() != parent) _exit(127);
      dup2(input[0], STDIN_FILENO);
      dup2(output[1], STDOUT_FILENO);
      for (const int end : {input[0], input[1], output[0], output[1]}) close(end);
      execl(program.c_str(), program.c_str(), nullptr);
      _exit(127);
    }
    close(input[0]);
    close(output[1]);
    input_ = input[1];
    output_ = output[0];
  }
  Started(const Started&) = delete;
  Started& operator=(const Started&) = delete;
  ~Started() {
    close(input_);
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
    close(output_);
  }

  /// Returns once the program has answered, and has therefore begun.
  bool answers(const std::string& line) const {
    char byte = 0;
    return write(input_, line.data(), line.size()) == static_cast<ssize_t>(line.size()) && read(output_, &byte, 1) == 1;
  }

  bool canBeRead() const {
    const int memory = open(("/proc/" + std::to_string(process_) + "/mem").c_str(), O_RDONLY);
    if (memory >= 0) close(memory);
    return memory >= 0;
  }
  bool canBeAttachedTo() const { return ptrace(PTRACE_SEIZE, process_, nullptr, nullptr) == 0; }

 private:
  pid_t process_ = -1;
  int input_ = -1;
  int output_ = -1;
};

constexpr int isOpen = 1;
constexpr int didNotStart = 2;
constexpr int noOtherUser = 3;

/// As a user without rights: what can be done to a process of the same user that this one has started.
int lookInto(const std::string& program, const std::string& question) {
  constexpr uid_t nobody = 65534;
  if (geteuid() == 0 && (setgroups(0, nullptr) != 0 || setgid(nobody) != 0 || setuid(nobody) != 0)) return noOtherUser;
  prctl(PR_SET_DUMPABLE, 1);
  const Started other(program);
  if (!other.answers(question)) return didNotStart;
  return other.canBeRead() || other.canBeAttachedTo() ? isOpen : 0;
}

int statusOf(const std::function<int()>& work) {
  const pid_t process = fork();
  if (process == 0) _exit(work());
  int status = 0;
  waitpid(process, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(ExtensionPrivacyTest, AnotherProcessOfTheUserCanNeitherReadItNorAttach) {
  // The other user has to reach the program.
  const support::TemporaryFolder folder;
  fs::permissions(folder.path(""), fs::perms::owner_all | fs::perms::others_read | fs::perms::others_exec);
  const std::string extension = folder.path("extension");
  fs::copy_file(VAMBA_EXTENSION, extension);
  fs::permissions(extension, fs::perms::owner_all | fs::perms::others_read | fs::perms::others_exec);

  const int ordinary = statusOf([] { return lookInto("/bin/cat", "x"); });
  if (ordinary != isOpen) GTEST_SKIP() << "here no process can look into another one (" << ordinary << ")";
  const int status =
      statusOf([&] { return lookInto(extension, "{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"widgets\"}\n"); });
  if (status == didNotStart) GTEST_SKIP() << "another user cannot start programs in " << folder.path("");
  EXPECT_EQ(status, 0);
}

/// A line of a /proc/PID/status: "Seccomp:" gives "2".
std::string statusLine(const fs::path& folder, const std::string& name) {
  std::ifstream status(folder / "status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with(name)) return line.substr(line.find_first_not_of("\t ", name.size()));
  }
  return "no " + name;
}

class ExtensionRightsTest : public ServiceTest {
 protected:
  void SetUp() override {
    if (!platform::sandboxIsBuiltIn) GTEST_SKIP() << "this build applies no restrictions";
  }
};

TEST_F(ExtensionRightsTest, AreTheLeastInEveryThreadOnceARequestIsRead) {
  const auto released = std::make_shared<support::Event>();
  everyAnswer({support::Await{released}, support::Send{support::HttpAnswer{.status = 500}.bytes()}});
  const int loading = extension().ask("timeline", boardParams());
  ASSERT_TRUE(service.waitForRequests(3));
  int threads = 0;
  for (const auto& thread : fs::directory_iterator("/proc/" + std::to_string(extension().id()) + "/task")) {
    ++threads;
    EXPECT_EQ(statusLine(thread.path(), "NoNewPrivs:"), "1");
    EXPECT_EQ(statusLine(thread.path(), "Seccomp:"), "2");
    EXPECT_EQ(statusLine(thread.path(), "CapPrm:"), "0000000000000000");
    EXPECT_EQ(statusLine(thread.path(), "CapEff:"), "0000000000000000");
  }
  EXPECT_GT(threads, 3) << "a load has threads of its own";
  released->set();
  EXPECT_EQ(extension().answerTo(loading)["result"]["entries"][0]["blad"], serverError(500));
}

// A tracer stands in for a kernel without Landlock.
TEST_F(ExtensionRightsTest, LoadsWithoutLandlockAndSaysSoOnlyWhenAsked) {
  if (const auto reason = support::reasonNotToTrace()) GTEST_SKIP() << *reason;
  const std::string program = folder_.path("on-an-old-kernel");
  support::writeProgramWithoutLandlock(program, VAMBA_EXTENSION);
  for (const bool asked : {false, true}) {
    if (asked) environment["VAMBA_VERBOSE"] = "1";
    support::ExtensionUnderTest old(program, environment);
    const json answer = old.call("timeline", boardParams());
    EXPECT_EQ(answer["result"]["entries"].size(), 1U) << answer << old.diagnostics();
    EXPECT_EQ(old.diagnostics(),
              asked ? "vamba-widzety: goes on without a restriction: Landlock: Function not implemented\n" : "");
    old.closeInput();
    EXPECT_EQ(old.exitStatus(), 0);
  }
}

class ExtensionSecretTest : public ServiceTest {
 protected:
  /// How often the bytes occur in the memory that a process can read, its arguments and environment among it: in all
  /// that a core forced by root would hold. Absent where the memory cannot be read.
  static std::optional<int> copiesIn(pid_t process, const std::string& bytes) {
    const std::string folder = "/proc/" + std::to_string(process) + "/";
    std::ifstream maps(folder + "maps");
    std::ifstream memory(folder + "mem", std::ios::binary);
    if (!maps || !memory) return std::nullopt;
    int copies = 0;
    for (std::string line; std::getline(maps, line);) {
      std::uintptr_t begin = 0;
      std::uintptr_t end = 0;
      char dash = 0;
      std::string rights;
      std::istringstream(line) >> std::hex >> begin >> dash >> end >> rights;
      if (!rights.starts_with('r') || line.find("[v") != std::string::npos) continue;
      std::string content(end - begin, '\0');
      memory.clear();
      memory.seekg(static_cast<std::streamoff>(begin));
      memory.read(content.data(), static_cast<std::streamsize>(content.size()));
      for (auto at = content.find(bytes); at != std::string::npos; at = content.find(bytes, at + 1)) ++copies;
    }
    return copies;
  }
};

// Over HTTP/1.1. Over HTTP/2 the library that frames it leaves copies in the heap that are not ours to overwrite. The
// token is long enough not to be found by chance.
TEST_F(ExtensionSecretTest, NothingOfTheTokenIsLeftInItsMemoryAfterALoad) {
  if (support::sanitized) GTEST_SKIP() << "the sanitizers' own memory is too large to be searched";
  const std::string token = "tajne-0123456789abcdefghijklmnopqrstuvwxyz";
  items.store("token-urzadzenia", token);

  // While requests are under way it is there, so the search can find it.
  const auto released = std::make_shared<support::Event>();
  everyAnswer({support::Await{released}, support::Send{support::HttpAnswer{.status = 500}.bytes()}});
  const int loading = extension().ask("timeline", boardParams());
  ASSERT_TRUE(service.waitForRequests(3));
  const auto underWay = copiesIn(extension().id(), token);
  released->set();
  EXPECT_EQ(extension().answerTo(loading)["result"]["entries"][0]["blad"], serverError(500));
  if (!underWay) GTEST_SKIP() << "only root can look into the extension";
  EXPECT_GT(*underWay, 0);

  for (const int status : {500, 200, 401}) {
    everyAnswer({support::Send{support::HttpAnswer{.status = status}.bytes()}});
    loadSentence();
    EXPECT_EQ(service.requests().back().header("Authorization"), "Bearer " + token);
    // The last connection is closed after the answer was given.
    EXPECT_TRUE(support::eventually([&] { return copiesIn(extension().id(), token) == 0; })) << status;
  }
  EXPECT_THAT(extension().diagnostics(), Not(HasSubstr(token)));
}

TEST_F(ExtensionSecretTest, LogsNoTlsKeysAndWaitsForNoPipe) {
  const std::string keys = folder_.path("keys");
  const std::string pipe = folder_.path("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  for (const auto& [name, value] : std::vector<std::pair<std::string, std::string>>{{"SSLKEYLOGFILE", keys},
                                                                                    {"SSLKEYLOGFILE", pipe},
                                                                                    {"OPENSSL_CONF", pipe},
                                                                                    {"TZ", pipe},
                                                                                    {"TZ", ":" + pipe}}) {
    const auto before = environment;
    environment[name] = value;
    restart();
    EXPECT_EQ(loadSentence(), "") << name << "=" << value;
    environment = before;
  }
  EXPECT_FALSE(fs::exists(keys));

  // Where the file of trusted certificates is a pipe, none is trusted.
  environment["SSL_CERT_FILE"] = pipe;
  restart();
  items.store("adres-api", "https://127.0.0.1:" + std::to_string(service.port()) + "/api");
  EXPECT_EQ(loadSentence(), noConnection);
}

}  // namespace
}  // namespace end_to_end
