// A bundle judges as a store does into which OpenSSL has loaded the whole file.
#include "platform/url_session/root_bundle.hpp"

#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <openssl/ec.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>

#include "support/temporary_folder.hpp"

namespace platform {
namespace {

struct Free {
  void operator()(BIO* bio) const { BIO_free(bio); }
  void operator()(EVP_PKEY* key) const { EVP_PKEY_free(key); }
  void operator()(X509* certificate) const { X509_free(certificate); }
  void operator()(X509_STORE* store) const { X509_STORE_free(store); }
  void operator()(X509_STORE_CTX* context) const { X509_STORE_CTX_free(context); }
};
template <typename T>
using Owned = std::unique_ptr<T, Free>;

/// A name as one common name; its encoding may differ while it counts as the same.
struct Name {
  std::string text;
  int encoding = MBSTRING_UTF8;
};

struct Party {
  Owned<EVP_PKEY> key{EVP_EC_gen("P-256")};
  Owned<X509> certificate{X509_new()};
};

void setName(X509_NAME* name, const Name& value) {
  X509_NAME_add_entry_by_txt(name, "CN", value.encoding, reinterpret_cast<const unsigned char*>(value.text.c_str()), -1,
                             -1, 0);
}

/// Without those of the keys, one of several issuers of the same name is taken for the issuer, whether it is or not.
enum class Identifiers { ofKeys, none };

/// Signed by `issuer`, or by itself where that is null.
Party made(const Name& name, const Party* issuer, const Name& issuerName, bool isAuthority, long lastsSeconds = 86'400,
           Identifiers identifiers = Identifiers::ofKeys) {
  static long serial = 0;
  Party party;
  X509* const certificate = party.certificate.get();
  X509_set_version(certificate, 2);
  ASN1_INTEGER_set(X509_get_serialNumber(certificate), ++serial);
  X509_gmtime_adj(X509_getm_notBefore(certificate), -172'800);
  X509_gmtime_adj(X509_getm_notAfter(certificate), lastsSeconds);
  setName(X509_get_subject_name(certificate), name);
  setName(X509_get_issuer_name(certificate), issuerName);
  X509_set_pubkey(certificate, party.key.get());
  X509V3_CTX context;
  X509V3_set_ctx(&context, issuer == nullptr ? certificate : issuer->certificate.get(), certificate, nullptr, nullptr,
                 0);
  const auto add = [&](int kind, const char* value) {
    X509_EXTENSION* const extension = X509V3_EXT_conf_nid(nullptr, &context, kind, value);
    X509_add_ext(certificate, extension, -1);
    X509_EXTENSION_free(extension);
  };
  add(NID_basic_constraints, isAuthority ? "critical,CA:TRUE" : "CA:FALSE");
  if (identifiers == Identifiers::ofKeys) {
    add(NID_subject_key_identifier, "hash");
    add(NID_authority_key_identifier, "keyid");
  }
  X509_sign(certificate, issuer == nullptr ? party.key.get() : issuer->key.get(), EVP_sha256());
  return party;
}

Party authority(const Name& name) { return made(name, nullptr, name, true); }

std::string textOf(BIO* bio) {
  char* bytes = nullptr;
  const long length = BIO_get_mem_data(bio, &bytes);
  return {bytes, static_cast<std::size_t>(length)};
}

std::string pem(const Party& party) {
  const Owned<BIO> bio(BIO_new(BIO_s_mem()));
  PEM_write_bio_X509(bio.get(), party.certificate.get());
  return textOf(bio.get());
}

std::string trustedPem(const Party& party) {
  const Owned<BIO> bio(BIO_new(BIO_s_mem()));
  PEM_write_bio_X509_AUX(bio.get(), party.certificate.get());
  return textOf(bio.get());
}

std::string keyPem(const Party& party) {
  const Owned<BIO> bio(BIO_new(BIO_s_mem()));
  PEM_write_bio_PrivateKey(bio.get(), party.key.get(), nullptr, nullptr, 0, nullptr, nullptr);
  return textOf(bio.get());
}

/// X509_V_OK or why the chain from `leaf` does not hold.
int judged(X509_STORE* store, const Party& leaf) {
  const Owned<X509_STORE_CTX> context(X509_STORE_CTX_new());
  X509_STORE_CTX_init(context.get(), store, leaf.certificate.get(), nullptr);
  X509_STORE_CTX_set_purpose(context.get(), X509_PURPOSE_SSL_SERVER);
  X509_verify_cert(context.get());
  return X509_STORE_CTX_get_error(context.get());
}

class RootBundleTest : public testing::Test {
 protected:
  std::string fileOf(const std::string& text) {
    std::string path = folder_.path("roots-" + std::to_string(++files_) + ".pem");
    std::ofstream(path, std::ios::binary) << text;
    return path;
  }

  static Owned<X509_STORE> wholeFile(const std::string& file) {
    Owned<X509_STORE> store(X509_STORE_new());
    X509_STORE_set_flags(store.get(), X509_V_FLAG_TRUSTED_FIRST | X509_V_FLAG_PARTIAL_CHAIN);
    return X509_STORE_load_file(store.get(), file.c_str()) == 1 ? std::move(store) : nullptr;
  }

  const Name ours_{"Our Authority"};
  const Party root_ = authority(ours_);
  const Party sameName_ = authority(ours_);
  const Party otherEncoding_ = authority({"our   AUTHORITY", V_ASN1_T61STRING});
  const Party stranger_ = authority({"Stranger"});
  const Party intermediate_ = made({"Intermediate"}, &root_, ours_, true);

  const Party server_ = made({"server"}, &root_, ours_, false);
  const Party expired_ = made({"expired"}, &root_, ours_, false, -3'600);
  const Party unidentified_ = made({"unidentified"}, &root_, ours_, false, 86'400, Identifiers::none);
  const Party misspelt_ = made({"misspelt"}, &otherEncoding_, ours_, false);
  const Party behindIntermediate_ = made({"behind"}, &intermediate_, {"Intermediate"}, false);
  const Party selfSigned_ = made({"self"}, nullptr, {"self"}, false);

 private:
  support::TemporaryFolder folder_;
  int files_ = 0;
};

TEST_F(RootBundleTest, JudgesAsTheWholeFileDoes) {
  const std::string files[] = {
      pem(root_),
      pem(stranger_),
      pem(stranger_) + pem(root_),
      pem(sameName_),
      pem(sameName_) + pem(root_),
      pem(root_) + pem(sameName_),
      pem(otherEncoding_) + pem(root_),
      pem(root_) + pem(stranger_) + pem(otherEncoding_) + pem(sameName_),
      pem(root_) + pem(root_),
      pem(intermediate_),
      pem(intermediate_) + pem(root_),
      pem(server_),
      pem(selfSigned_),
      pem(expired_) + pem(stranger_),
      trustedPem(root_),
      pem(stranger_) + trustedPem(root_),
      pem(root_) + keyPem(root_),
      "Our Authority\n=====\n" + pem(root_) + "\n# the next one\n" + pem(stranger_) + "no more\n",
  };
  const Party* const leaves[] = {&server_, &expired_, &unidentified_, &misspelt_, &behindIntermediate_, &selfSigned_};
  int trusted = 0;
  int refused = 0;
  for (const std::string& text : files) {
    const std::string file = fileOf(text);
    const auto whole = wholeFile(file);
    ASSERT_TRUE(whole) << text;
    RootBundle bundle(file);
    ASSERT_NE(bundle.store(), nullptr) << text;
    for (int again = 0; again < 2; ++again) {  // the second time out of what the first has left in the store
      for (const Party* leaf : leaves) {
        const int expected = judged(whole.get(), *leaf);
        EXPECT_EQ(judged(bundle.store(), *leaf), expected) << text;
        ++(expected == X509_V_OK ? trusted : refused);
      }
    }
  }
  EXPECT_GT(trusted, 20);
  EXPECT_GT(refused, 20);
}

TEST_F(RootBundleTest, TrustsARootAmongOthersAndNothingWithoutIt) {
  RootBundle with(fileOf(pem(stranger_) + pem(sameName_) + pem(root_)));
  EXPECT_EQ(judged(with.store(), server_), X509_V_OK);
  EXPECT_EQ(judged(with.store(), expired_), X509_V_ERR_CERT_HAS_EXPIRED);
  EXPECT_NE(judged(with.store(), selfSigned_), X509_V_OK);
  RootBundle without(fileOf(pem(stranger_) + pem(sameName_)));
  EXPECT_NE(judged(without.store(), server_), X509_V_OK);
}

TEST_F(RootBundleTest, ParsesOnlyTheRootsThatAreAskedFor) {
  RootBundle bundle(fileOf(pem(stranger_) + pem(root_) + pem(intermediate_)));
  const auto parsed = [&bundle] { return sk_X509_OBJECT_num(X509_STORE_get0_objects(bundle.store())); };
  EXPECT_EQ(parsed(), 0);
  EXPECT_EQ(judged(bundle.store(), server_), X509_V_OK);
  EXPECT_EQ(parsed(), 1);
}

TEST_F(RootBundleTest, HasNoStoreForAFileThatOpenSslRefuses) {
  const std::string whole = pem(root_);
  for (const std::string& text : {std::string(), std::string("no certificate\n"), keyPem(root_),
                                  whole.substr(0, whole.size() / 2), whole + whole.substr(0, whole.size() / 2),
                                  std::string("-----BEGIN CERTIFICATE-----\nAAAA\n-----END CERTIFICATE-----\n")}) {
    const std::string file = fileOf(text);
    EXPECT_EQ(RootBundle(file).store() == nullptr, wholeFile(file) == nullptr) << text;
  }
  EXPECT_EQ(RootBundle("/nonexistent.pem").store(), nullptr);
  EXPECT_EQ(RootBundle(fileOf("")).store(), nullptr);
}

TEST_F(RootBundleTest, IsReadOnceItIsThere) {
  const std::string file = fileOf("");
  RootBundle bundle(file);
  EXPECT_EQ(bundle.store(), nullptr);
  std::ofstream(file) << pem(root_);
  ASSERT_NE(bundle.store(), nullptr);
  EXPECT_EQ(judged(bundle.store(), server_), X509_V_OK);
}

}  // namespace
}  // namespace platform
