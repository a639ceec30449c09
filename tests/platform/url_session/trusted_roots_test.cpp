#include "platform/url_session/trusted_roots.hpp"

#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

namespace platform {
namespace {

class TrustedRootsTest : public testing::Test {
 protected:
  TrustedRootsTest() {
    std::string name = (std::filesystem::temp_directory_path() / "roots-XXXXXX").string();
    folder_ = mkdtemp(name.data());
    std::filesystem::create_directory(folder_ / "hashed");
  }
  ~TrustedRootsTest() override { std::filesystem::remove_all(folder_); }

  void write(const std::string& name, const std::string& text) const { std::ofstream(folder_ / name) << text; }
  std::string path(const std::string& name) const { return (folder_ / name).string(); }

  std::filesystem::path folder_;
};

const std::string certificate = "-----BEGIN CERTIFICATE-----\nx\n-----END CERTIFICATE-----\n";

TEST_F(TrustedRootsTest, AreTheChosenFileAlone) {
  write("hashed/0a5ed36f.0", certificate);
  EXPECT_EQ(TrustedRoots::choose("/mine.pem", path("bundle"), path("hashed")),
            (TrustedRoots{.file = "/mine.pem", .folder = {}}));
}

TEST_F(TrustedRootsTest, AreTheHashedFolderThatHoldsAllOfTheBundle) {
  write("bundle", certificate + certificate);
  write("hashed/0a5ed36f.0", certificate);
  write("hashed/0a5ed36f.1", certificate);
  EXPECT_EQ(TrustedRoots::choose("", path("bundle"), path("hashed")),
            (TrustedRoots{.file = {}, .folder = path("hashed")}));
  EXPECT_EQ(TrustedRoots::choose("", "", path("hashed")), (TrustedRoots{.file = {}, .folder = path("hashed")}));
}

TEST_F(TrustedRootsTest, AreTheFolderWhereTheChosenFileIsTheDefaultOneByWhateverName) {
  write("bundle", certificate);
  write("hashed/0a5ed36f.0", certificate);
  std::filesystem::create_symlink(path("bundle"), path("link"));
  for (const char* name : {"bundle", "link"}) {
    EXPECT_EQ(TrustedRoots::choose(path(name), path("bundle"), path("hashed")),
              (TrustedRoots{.file = {}, .folder = path("hashed")}));
  }
}

TEST_F(TrustedRootsTest, AreTheChosenDefaultFileAloneWhereTheFolderHoldsMoreOrFewer) {
  write("hashed/0a5ed36f.0", certificate);
  write("hashed/0a5ed36f.1", certificate);
  for (const auto& bundle : {certificate, certificate + certificate + certificate}) {
    write("bundle", bundle);
    EXPECT_EQ(TrustedRoots::choose(path("bundle"), path("bundle"), path("hashed")),
              (TrustedRoots{.file = path("bundle"), .folder = {}}));
  }
  EXPECT_EQ(TrustedRoots::choose(path("bundle"), path("bundle"), ""),
            (TrustedRoots{.file = path("bundle"), .folder = {}}));
}

TEST_F(TrustedRootsTest, AreTheLibrarysDefaultsWhereTheFolderLacksSome) {
  write("bundle", certificate + certificate);
  write("hashed/0a5ed36f.0", certificate);
  write("hashed/Some_Root.pem", certificate);
  write("hashed/0A5ED36F.0", certificate);
  write("hashed/0a5ed36f.r0", certificate);
  EXPECT_EQ(TrustedRoots::choose("", path("bundle"), path("hashed")), TrustedRoots{});
  EXPECT_EQ(TrustedRoots::choose("", path("bundle"), path("absent")), TrustedRoots{});
  EXPECT_EQ(TrustedRoots::choose("", path("bundle"), ""), TrustedRoots{});
}

}  // namespace
}  // namespace platform
