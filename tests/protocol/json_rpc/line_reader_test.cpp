#include "protocol/json_rpc/line_reader.hpp"

#include <random>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

namespace protocol::json_rpc {
namespace {

using Status = LineReader::Status;

struct Pipe {
  Pipe() { EXPECT_EQ(::pipe2(ends, O_CLOEXEC), 0); }
  ~Pipe() {
    ::close(ends[0]);
    closeWriter();
  }
  void write(std::string_view text) const {
    while (!text.empty()) {
      const ssize_t count = ::write(ends[1], text.data(), text.size());
      ASSERT_GT(count, 0);
      text.remove_prefix(static_cast<std::size_t>(count));
    }
  }
  void closeWriter() {
    if (ends[1] >= 0) ::close(ends[1]);
    ends[1] = -1;
  }
  int ends[2] = {-1, -1};
};

// Lines as "text", a line that was too long as "<too long>".
std::vector<std::string> readAll(LineReader& reader) {
  std::vector<std::string> lines;
  while (true) {
    const auto result = reader.next();
    if (result.status == Status::line) {
      lines.emplace_back(result.text);
    } else if (result.status == Status::tooLong) {
      lines.emplace_back("<too long>");
    } else {
      EXPECT_EQ(result.status, Status::endOfInput);
      return lines;
    }
  }
}

std::vector<std::string> linesOf(std::string_view input, std::size_t maximum) {
  Pipe pipe;
  std::thread writer([&] {
    pipe.write(input);
    pipe.closeWriter();
  });
  LineReader reader(pipe.ends[0], maximum);
  auto lines = readAll(reader);
  writer.join();
  return lines;
}

TEST(LineReader, SplitsAtLineEndsOnly) {
  using Lines = std::vector<std::string>;
  EXPECT_EQ(linesOf("", 8), Lines{});
  EXPECT_EQ(linesOf("\n", 8), Lines{""});
  EXPECT_EQ(linesOf("a\r\nb c\n\nd", 8), (Lines{"a\r", "b c", "", "d"}));
}

TEST(LineReader, TellsALineOverTheLimitOnceAndReadsPastIt) {
  using Lines = std::vector<std::string>;
  EXPECT_EQ(linesOf("12345678\n", 8), Lines{"12345678"});
  EXPECT_EQ(linesOf("12345678", 8), Lines{"12345678"});
  EXPECT_EQ(linesOf("123456789\nx\n", 8), (Lines{"<too long>", "x"}));
  EXPECT_EQ(linesOf("a\n123456789", 8), (Lines{"a", "<too long>"}));
  EXPECT_EQ(linesOf("x\n" + std::string(1'000'000, 'y') + "\nz\n" + std::string(70'000, 'y'), 8),
            (Lines{"x", "<too long>", "z", "<too long>"}));
}

TEST(LineReader, AgreesWithASimpleSplitOnRandomInput) {
  std::mt19937 random(20240607);
  for (int round = 0; round < 200; ++round) {
    std::string input;
    const auto length = random() % 300'000;
    const auto lineLength = 1 + random() % 100'000;
    while (input.size() < length) input += random() % lineLength == 0 ? '\n' : static_cast<char>('a' + random() % 26);
    std::vector<std::string> expected;
    const std::size_t maximum = 70'000;
    for (std::size_t at = 0; at < input.size();) {
      const auto lineEnd = std::min(input.find('\n', at), input.size());
      expected.push_back(lineEnd - at > maximum ? "<too long>" : input.substr(at, lineEnd - at));
      at = lineEnd + 1;
    }
    ASSERT_EQ(linesOf(input, maximum), expected) << "round " << round;
  }
}

TEST(LineReader, TellsWhenANonBlockingDescriptorHasNothingYet) {
  const Pipe pipe;
  ASSERT_EQ(::fcntl(pipe.ends[0], F_SETFL, O_NONBLOCK), 0);
  LineReader reader(pipe.ends[0]);
  EXPECT_EQ(reader.next().status, Status::wouldBlock);
  pipe.write("half a ");
  EXPECT_EQ(reader.next().status, Status::wouldBlock);
  pipe.write("line\nnext");
  EXPECT_EQ(reader.next().text, "half a line");
  EXPECT_EQ(reader.next().status, Status::wouldBlock);
}

TEST(LineReader, TellsAFailure) {
  LineReader reader(-1);
  const auto result = reader.next();
  EXPECT_EQ(result.status, Status::failed);
  EXPECT_EQ(result.error, EBADF);
}

TEST(LineReader, ReadsAnEndlessLineWithoutHoldingIt) {
  rusage before{};
  ASSERT_EQ(::getrusage(RUSAGE_SELF, &before), 0);
  Pipe pipe;
  std::thread writer([&] {
    const std::string block(1 << 20, 'x');
    for (int i = 0; i < 200; ++i) pipe.write(block);
    pipe.write("\nlast\n");
    pipe.closeWriter();
  });
  LineReader reader(pipe.ends[0], std::size_t{4} << 20);
  EXPECT_EQ(readAll(reader), (std::vector<std::string>{"<too long>", "last"}));
  writer.join();
  rusage after{};
  ASSERT_EQ(::getrusage(RUSAGE_SELF, &after), 0);
  EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 64 * 1024) << "kilobytes of the 200 MiB were kept";
}

}  // namespace
}  // namespace protocol::json_rpc
