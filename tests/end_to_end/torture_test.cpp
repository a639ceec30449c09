// System calls and allocations of the extension fail one by one over a load and a render: it answers, or it ends with a
// status, and it is never ended by a signal. A tracer (strace) makes the N-th call of a kind fail.
#include <string>
#include <vector>

#include "end_to_end/extension_fixture.hpp"
#include "support/failing_allocation/failing_allocation.hpp"
#include "support/system_call_faults.hpp"

namespace end_to_end {
namespace {

struct Failure {
  std::vector<std::string> calls;
  std::string error;
  int first;
  int last;
};

// Left out: futex() and munmap(), whose failures the C library takes for corrupted memory and aborts at, and the very
// first mmap(), at which the dynamic loader crashes before the program has begun.
const Failure failures[] = {
    {{"openat", "read"}, "EIO", 1, 60},
    {{"mmap"}, "ENOMEM", 2, 60},
    {{"socket", "connect", "sendto", "recvfrom", "getsockopt", "setsockopt", "getsockname", "pipe2", "socketpair"},
     "ENOMEM",
     1,
     4},
    {{"clone", "poll", "newfstatat", "close", "write", "mprotect", "getrandom", "fcntl", "prctl"}, "EPERM", 1, 4},
    {{"read", "write", "poll", "connect", "sendto", "recvfrom", "openat"}, "EINTR", 1, 4},
    {{"landlock_create_ruleset", "landlock_add_rule", "landlock_restrict_self", "seccomp", "capset"}, "EPERM", 1, 2},
};

using ExtensionTortureTest = ServiceTest;

TEST_F(ExtensionTortureTest, EndsByNoSignalWhicheverSystemCallFails) {
  if (const auto reason = support::reasonNotToTrace()) GTEST_SKIP() << *reason;
  const std::string program = folder_.path("tortured");
  folder_.write("tortured",
                "#!/bin/sh\nexec /usr/bin/strace -f -qqq -o /dev/null -e trace=\"$TORTURED_CALL\" "
                "-e inject=\"$TORTURED_CALL:error=$TORTURED_ERROR:when=$TORTURED_AT\" " VAMBA_EXTENSION "\n");
  std::filesystem::permissions(program, std::filesystem::perms::owner_all);
  const json entry{
      {"date", "2025-03-14T08:00:00Z"}, {"doDecyzji", 1}, {"zadania", json::array()}, {"spotkania", json::array()}};
  json rendered = boardParams();
  rendered["entry"] = entry;

  int answered = 0;
  for (const auto& [calls, error, first, last] : failures) {
    for (const auto& call : calls) {
      for (int at = first; at <= last; ++at) {
        environment["TORTURED_CALL"] = call;
        environment["TORTURED_ERROR"] = error;
        environment["TORTURED_AT"] = std::to_string(at);
        support::ExtensionUnderTest tortured(program, environment);
        tortured.ask("timeline", boardParams());
        tortured.ask("render", rendered);
        for (int i = 0; i < 2; ++i) answered += tortured.line() ? 1 : 0;
        tortured.closeInput();
        const auto status = tortured.exitStatus();
        EXPECT_TRUE(status && *status < 128)
            << call << " number " << at << " fails with " << error << ": " << status.value_or(-1) << "\n"
            << tortured.diagnostics();
      }
    }
  }
  EXPECT_GT(answered, 200) << "most failures are survived";
}

using ExtensionAllocationTest = ServiceTest;

TEST_F(ExtensionAllocationTest, AnswersOrEndsWithAStatusWhicheverAllocationFails) {
  if (support::sanitized) GTEST_SKIP() << "a sanitizer brings an allocator of its own";
  service.answer(tasksTarget, {.body = json::array({serverTask(1, "Wysłać wniosek grantowy", "2020-01-01")}).dump()});
  service.answer(inboxTarget, {.body = R"({"zadania": [{"id":"00000000-0000-4000-8000-000000000002","tytul":"x"}]})"});
  json rendered = boardParams();
  rendered["entry"] = {
      {"date", "2025-03-14T08:00:00Z"}, {"doDecyzji", 1}, {"zadania", json::array()}, {"spotkania", json::array()}};
  // libseccomp makes a wrong filter or frees twice when its own memory runs out.
  support::FailingAllocation allocation("vamba-widzety", "libseccomp");
  environment.merge(allocation.environment());

  int answers = 0;
  const auto run = [&](std::uint64_t number) {
    allocation.failAt(number);
    support::ExtensionUnderTest tortured(VAMBA_EXTENSION, environment);
    tortured.ask("timeline", boardParams());
    tortured.ask("render", rendered);
    int answered = 0;
    while (answered < 2 && tortured.line()) ++answered;
    EXPECT_TRUE(answered == 2 || tortured.exitStatus()) << "it neither answers nor ends";
    tortured.closeInput();
    EXPECT_THAT(tortured.exitStatus(), testing::Optional(testing::AnyOf(0, 1))) << tortured.diagnostics();
    answers += answered;
  };
  run(0);
  ASSERT_EQ(answers, 2);
  const auto all = allocation.counted();
  ASSERT_GT(all, 500U);
  // The threads' order differs from run to run, so all of them fail in the course of many.
  constexpr std::uint64_t runs = 150;
  for (std::uint64_t i = 0; i < runs; ++i) {
    const auto number = 1 + i * all / runs;
    SCOPED_TRACE("allocation " + std::to_string(number) + " of " + std::to_string(all) + " fails");
    run(number);
  }
  EXPECT_GT(answers, 100) << "most failures are survived";
}

}  // namespace
}  // namespace end_to_end
