#include "platform/url_session/root_bundle.hpp"

#include <string_view>
#include <utility>

#include <openssl/asn1.h>
#include <openssl/err.h>
#include <openssl/pem.h>
#include <openssl/x509.h>

namespace platform {
namespace {

struct Free {
  void operator()(BIO* file) const { BIO_free(file); }
  void operator()(X509* certificate) const { X509_free(certificate); }
  void operator()(X509_NAME* name) const { X509_NAME_free(name); }
  void operator()(char* text) const { OPENSSL_free(text); }
  void operator()(unsigned char* bytes) const { OPENSSL_free(bytes); }
};
template <typename T>
using Owned = std::unique_ptr<T, Free>;

/// Reads DER (X.690) from front to back, one level at a time.
class Der {
 public:
  Der(const unsigned char* begin, const unsigned char* end) : at_(begin), end_(end) {}

  const unsigned char* at() const { return at_; }
  const unsigned char* end() const { return end_; }

  /// Steps into what stands next, which must be a sequence.
  bool enterSequence() {
    const auto element = header();
    if (!element.isWhole || element.tag != V_ASN1_SEQUENCE || element.classOfTag != V_ASN1_UNIVERSAL) return false;
    at_ = element.content;
    end_ = element.content + element.length;
    return true;
  }

  bool skip() {
    const auto element = header();
    if (!element.isWhole) return false;
    at_ = element.content + element.length;
    return true;
  }

  /// Whether the element tagged [0], which a certificate may begin with, stands next.
  bool isAtVersion() const {
    const auto element = header();
    return element.isWhole && element.tag == 0 && element.classOfTag == V_ASN1_CONTEXT_SPECIFIC;
  }

 private:
  struct Element {
    bool isWhole = false;  ///< and of a definite length, as DER has it
    int tag = 0;
    int classOfTag = 0;
    const unsigned char* content = nullptr;
    long length = 0;
  };

  Element header() const {
    constexpr int malformed = 0x80;
    constexpr int indefinite = 0x01;
    Element element{.content = at_};
    const int flags = ASN1_get_object(&element.content, &element.length, &element.tag, &element.classOfTag, end_ - at_);
    element.isWhole = (flags & (malformed | indefinite)) == 0;
    return element;
  }

  const unsigned char* at_;
  const unsigned char* end_;
};

/// The subject of a certificate (RFC 5280, section 4.1), of which nothing else is looked at. Null where it has none.
Owned<X509_NAME> subjectOf(const unsigned char* bytes, long length) {
  Der der(bytes, bytes + length);
  if (!der.enterSequence() || der.end() != bytes + length || !der.enterSequence()) return nullptr;
  if (der.isAtVersion() && !der.skip()) return nullptr;
  // Serial number, signature algorithm, issuer, validity.
  if (!der.skip() || !der.skip() || !der.skip() || !der.skip()) return nullptr;
  const unsigned char* at = der.at();
  return Owned<X509_NAME>(d2i_X509_NAME(nullptr, &at, der.end() - at));
}

}  // namespace

struct RootBundle::Root {
  Owned<X509_NAME> subject;
  Owned<unsigned char> der;
  long length;
};

RootBundle::RootBundle(std::string file) : file_(std::move(file)) {}
RootBundle::~RootBundle() = default;

X509_STORE* RootBundle::store() {
  if (store_) return store_.get();
  Store store(X509_STORE_new());
  const bool isFilled = store &&
                        X509_STORE_set_flags(store.get(), X509_V_FLAG_TRUSTED_FIRST | X509_V_FLAG_PARTIAL_CHAIN) == 1 &&
                        (readRoots() ? addLookup(store.get()) : X509_STORE_load_file(store.get(), file_.c_str()) == 1);
  ERR_clear_error();  // the end of the file counts as one, and OpenSSL would take it for that of a later call
  if (isFilled) store_ = std::move(store);
  return store_.get();
}

// False where the file holds anything but plain certificates, or none.
bool RootBundle::readRoots() {
  roots_.clear();
  const Owned<BIO> file(BIO_new_file(file_.c_str(), "rb"));
  if (!file) return false;
  ERR_clear_error();
  while (true) {
    char* name = nullptr;
    char* header = nullptr;
    unsigned char* bytes = nullptr;
    long length = 0;
    if (PEM_read_bio(file.get(), &name, &header, &bytes, &length) != 1) break;
    const Owned<char> ownedName(name);
    const Owned<char> ownedHeader(header);
    Owned<unsigned char> der(bytes);
    const std::string_view kind = name;
    if ((kind != PEM_STRING_X509 && kind != PEM_STRING_X509_OLD) || *header != '\0') return false;
    auto subject = subjectOf(bytes, length);
    if (!subject) return false;
    roots_.push_back({.subject = std::move(subject), .der = std::move(der), .length = length});
  }
  const bool isAtEnd = ERR_GET_REASON(ERR_peek_last_error()) == PEM_R_NO_START_LINE;
  return isAtEnd && !roots_.empty();
}

bool RootBundle::addLookup(X509_STORE* store) {
  if (!method_) method_.reset(X509_LOOKUP_meth_new("roots parsed when asked for"));
  if (!method_ || X509_LOOKUP_meth_set_get_by_subject(method_.get(), &RootBundle::findBySubject) != 1) return false;
  X509_LOOKUP* const lookup = X509_STORE_add_lookup(store, method_.get());
  return lookup != nullptr && X509_LOOKUP_set_method_data(lookup, this) == 1;
}

// Called for a subject that the store does not hold yet. Every root of that subject goes into the store, where OpenSSL
// looks for the one that fits.
int RootBundle::findBySubject(X509_LOOKUP* lookup, X509_LOOKUP_TYPE type, const X509_NAME* subject,
                              X509_OBJECT* found) {
  if (type != X509_LU_X509) return 0;
  const auto& bundle = *static_cast<const RootBundle*>(X509_LOOKUP_get_method_data(lookup));
  bool isFound = false;
  for (const Root& root : bundle.roots_) {
    if (X509_NAME_cmp(root.subject.get(), subject) != 0) continue;
    const unsigned char* at = root.der.get();
    const Owned<X509> certificate(d2i_X509(nullptr, &at, root.length));
    if (!certificate || X509_STORE_add_cert(X509_LOOKUP_get_store(lookup), certificate.get()) != 1) continue;
    if (isFound) continue;
    isFound = X509_OBJECT_set1_X509(found, certificate.get()) == 1;
    // The caller takes a share of its own of what is found, as X509_LOOKUP_meth_set_get_by_subject(3) says: the one
    // that was just taken for it is one too many. The store's remains.
    if (isFound) X509_free(certificate.get());
  }
  return isFound ? 1 : 0;
}

}  // namespace platform
