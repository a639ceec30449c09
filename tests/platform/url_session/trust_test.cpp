// Which servers a session trusts, by the files and folders of certificates that it is given.
#include <filesystem>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "loading.hpp"
#include "support/nginx_server.hpp"
#include "support/temporary_folder.hpp"
#include "support/test_certificates.hpp"

namespace platform {
namespace {

using support::TemporaryFolder;

/// Two authorities of the same name, each alone in a file and alone in a folder. The server's certificate is signed by
/// the first.
class TrustInSetsThatDiffer : public testing::Test {
 protected:
  TrustInSetsThatDiffer() {
    EXPECT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    for (const auto& [file, folder] :
         {std::pair{serversFile, serversFolder}, std::pair{strangersFile, strangersFolder}}) {
      std::filesystem::create_directory(folder);
      std::filesystem::copy_file(file, folder + "/root.pem");
      support::runTool("openssl", "openssl", {"rehash", folder}, scratch_.path("openssl.log"));
    }
  }

  /// Whether a session with this file and this folder loads from the server.
  bool trusts(const std::string& file, const std::string& folder) {
    auto configuration = patientConfiguration();
    configuration.trustedRootsFile = file;
    configuration.trustedRootsFolder = folder;
    const auto loaded = UrlSession(configuration).data(requestFor(server_.url("/a")));
    if (!loaded) {
      EXPECT_EQ(loaded.error().kind, TransportError::Kind::secureConnectionFailed);
    }
    return loaded.has_value();
  }

 private:
  support::NginxServer server_{{.bodies = {{"/a", "[]"}}}};
  const support::TestCertificates stranger_;
  const TemporaryFolder scratch_;

 protected:
  const std::string serversFile = server_.authorityFile();
  const std::string strangersFile = stranger_.authorityFile();
  const std::string serversFolder = scratch_.path("servers");
  const std::string strangersFolder = scratch_.path("strangers");
  const std::string pipe = scratch_.path("pipe");  // nobody writes to it
};

TEST_F(TrustInSetsThatDiffer, IsInTheFileAloneWhereOneIsNamed) {
  for (const std::string& folder : {std::string(), serversFolder, strangersFolder}) {
    EXPECT_TRUE(trusts(serversFile, folder)) << folder;
    EXPECT_FALSE(trusts(strangersFile, folder)) << folder;
    for (const std::string& unusable : {strangersFolder, std::string("/nonexistent.pem"), pipe}) {
      EXPECT_FALSE(trusts(unusable, folder)) << unusable;
    }
  }
}

TEST_F(TrustInSetsThatDiffer, IsInTheFolderAloneWhereNoFileIsNamed) {
  EXPECT_TRUE(trusts("", serversFolder));
  EXPECT_FALSE(trusts("", strangersFolder));
}

TEST_F(TrustInSetsThatDiffer, IsInTheSystemsCertificatesWhereNeitherIsThere) { EXPECT_FALSE(trusts("", "")); }

}  // namespace
}  // namespace platform
