#include "platform/trust/trusted_certificates.hpp"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "support/temporary_folder.hpp"

namespace platform {
namespace {

using support::TemporaryFolder;

TEST(TrustedCertificates, AreTheChosenFileAlone) {
  const TemporaryFolder folder;
  folder.write("0a5ed36f.0", "");
  folder.write("mine.pem", "");
  EXPECT_EQ(TrustedCertificates::choose(folder.path("mine.pem"), folder.path("")),
            (TrustedCertificates{.file = folder.path("mine.pem"), .folder = {}}));
}

TEST(TrustedCertificates, AreNoneWhereTheChosenFileIsNoRegularFile) {
  const TemporaryFolder folder;
  folder.write("0a5ed36f.0", "");
  ASSERT_EQ(mkfifo(folder.path("pipe").c_str(), 0600), 0);
  for (const std::string& chosen :
       {folder.path("pipe"), folder.path(""), folder.path("missing"), std::string("/dev/zero")}) {
    EXPECT_EQ(TrustedCertificates::choose(chosen, folder.path("")),
              (TrustedCertificates{.file = "/dev/null", .folder = {}}))
        << chosen;
  }
}

TEST(TrustedCertificates, AreTheFolderWhereItHoldsAHashedName) {
  const TemporaryFolder folder;
  for (const char* name : {"Some_Root.pem", "0A5ED36F.0", "0a5ed36f.r0", "0a5ed36f.", "0a5ed36f", "0a5ed36.0"}) {
    folder.write(name, "");
  }
  EXPECT_EQ(TrustedCertificates::choose("", folder.path("")), TrustedCertificates{});
  EXPECT_EQ(hashedCertificatesIn(folder.path("")), 0);
  folder.write("0a5ed36f.12", "");
  EXPECT_EQ(hashedCertificatesIn(folder.path("")), 1);
  EXPECT_EQ(TrustedCertificates::choose("", folder.path("")),
            (TrustedCertificates{.file = {}, .folder = folder.path("")}));
}

TEST(TrustedCertificates, AreTheLibrarysDefaultsWhereThereIsNoSuchFolder) {
  EXPECT_EQ(TrustedCertificates::choose("", ""), TrustedCertificates{});
  EXPECT_EQ(TrustedCertificates::choose("", "/nonexistent"), TrustedCertificates{});
}

}  // namespace
}  // namespace platform
