// `vamba-host show` with a picture format, for which the host becomes the drawing program.
#include <gmock/gmock.h>

#include "host/commands/host_process.hpp"
#include "support/file_content.hpp"

namespace host {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class ShowPicture : public testing::Test {
 protected:
  support::TemporaryFolder folder_;
};

TEST_F(ShowPicture, DrawsEveryFormat) {
  const std::pair<const char*, const char*> formats[] = {{"png", "\x89PNG"}, {"svg", "<svg"}, {"pdf", "%PDF"}};
  for (const auto& [format, beginning] : formats) {
    const auto [status, output, errors] = runHost({"show", "--format", format});
    EXPECT_EQ(status, 0) << errors;
    EXPECT_THAT(output, StartsWith(beginning));
    const auto file = folder_.path(std::string("board.") + format);
    EXPECT_EQ(runHost({"show", "--output", file}).status, 0);
    EXPECT_EQ(support::contentOf(file), output) << "the suffix tells the format";
  }
}

TEST_F(ShowPicture, ReadsTheWholeCommandLine) {
  const auto small = runHost({"show", "--family", "small", "--entry", "-", "--format", "svg"}, R"({"tytul": "mine"})");
  EXPECT_THAT(small.output, HasSubstr("mine systemSmall"));
  const auto light = runHost({"show", "--format", "svg"}).output;
  EXPECT_NE(runHost({"show", "--format", "svg", "--appearance", "dark"}).output, light);
  EXPECT_NE(runHost({"show", "--format", "svg", "--scale", "2"}).output, light);
  EXPECT_THAT(light, HasSubstr("<text"));
  EXPECT_THAT(runHost({"show", "--format", "svg", "--outlines"}).output, Not(HasSubstr("<text")));
}

TEST_F(ShowPicture, FailsWithTheStatusOfWhatWentWrong) {
  EXPECT_EQ(runHost({"show", "--format", "png"}, "", "/no/such/extension").status, 1);
  EXPECT_EQ(runHost({"show", "--format", "png", "--entry", "/no/such/file"}).status, 2);
  const auto unwritable = runHost({"show", "--format", "png", "--output", "/dev/full"});
  EXPECT_EQ(unwritable.status, 2);
  EXPECT_EQ(unwritable.errors, "vamba-host: can't write /dev/full: No space left on device\n");
}

TEST_F(ShowPicture, IsNotWrittenToATerminal) {
  HostProcess host({"show", "--format", "png"}, Onto::terminal);
  EXPECT_EQ(host.rest(), "");
  EXPECT_EQ(host.status(), 2);
  EXPECT_EQ(host.errors(), "vamba-host: a terminal can't show a picture; name a file with --output\n");
}

TEST_F(ShowPicture, AloneNeedsTheTextLibrary) {
  EXPECT_THAT(support::contentOf(VAMBA_PICTURE), HasSubstr("libpango-1.0.so"));
  EXPECT_THAT(support::contentOf(VAMBA_HOST), Not(HasSubstr("libpango-1.0.so")));
}

}  // namespace
}  // namespace host
