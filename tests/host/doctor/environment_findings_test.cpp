// The findings that need a machine's files or variables of their own; tests/host/commands/doctor_test.cpp has the rest.
#include "host/doctor/environment_findings.hpp"

#include <filesystem>

#include <gtest/gtest.h>

#include "host/doctor/printing.hpp"
#include "support/environment.hpp"
#include "support/temporary_folder.hpp"

namespace host {
namespace {

TEST(LanguageFinding, NamesEachLanguageOfTheWidget) {
  support::ScopedEnvironment environment;
  for (const auto& [value, name] : {std::pair{"lt_LT", "Lithuanian"}, {"en_GB", "English"}, {"pl_PL", "Polish"}}) {
    environment.set("LANGUAGE", value);
    EXPECT_EQ(languageFinding(),
              (Finding{.subject = "language", .what = std::string(name) + ", as LANGUAGE=" + value + " asks"}));
  }
}

TEST(LanguageFinding, SaysThatNoVariableNamesOne) {
  support::ScopedEnvironment environment;
  for (const char* name : {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"}) environment.unset(name);
  EXPECT_EQ(languageFinding(), (Finding{.subject = "language", .what = "Polish, since no variable names another"}));
}

class CertificatesFinding : public testing::Test {
 protected:
  CertificatesFinding() { environment_.unset("SSL_CERT_FILE"); }
  Finding found() const { return certificatesFinding(folder_.path(".")); }
  std::string place() const { return folder_.path("."); }

  support::TemporaryFolder folder_;
  support::ScopedEnvironment environment_;
};

TEST_F(CertificatesFinding, IsAFaultWhereNoneAreInstalled) {
  folder_.write("README", "nothing");
  folder_.write("5ed36f99.x", "no certificate's name");
  EXPECT_EQ(found(), (Finding{.subject = "certificates",
                              .verdict = Verdict::fault,
                              .what = "none are installed in " + place(),
                              .advice = "Install the package ca-certificates."}));
}

TEST_F(CertificatesFinding, CountsHashedNames) {
  folder_.write("5ed36f99.0", "");
  EXPECT_EQ(found(), (Finding{.subject = "certificates", .what = "1 certificate in " + place()}));
  folder_.write("5ed36f99.1", "");
  EXPECT_EQ(found().what, "2 certificates in " + place());
}

TEST_F(CertificatesFinding, CountsTheBundleWhereNoNameIsHashed) {
  folder_.write("ca-certificates.crt", "-----BEGIN CERTIFICATE-----\n-----BEGIN TRUSTED CERTIFICATE-----\n");
  EXPECT_EQ(found().what, "2 certificates in " + place() + "/ca-certificates.crt");
}

}  // namespace
}  // namespace host
