// A file of root certificates of which only those are parsed that a server's chain asks for: parsing all of a usual
// bundle takes 20 ms, finding one in it little more than one. Whether a chain holds is OpenSSL's to judge.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <openssl/x509_vfy.h>

namespace platform {

class RootBundle {
 public:
  /// A file of certificates in PEM, which is read when they are first asked for.
  explicit RootBundle(std::string file);
  ~RootBundle();
  RootBundle(const RootBundle&) = delete;
  RootBundle& operator=(const RootBundle&) = delete;

  /// Trusts the bundle's certificates and nothing else, with the flags that the HTTP library sets on its own store. A
  /// file that holds anything but plain certificates (trusted ones, revocation lists, keys) is loaded whole by OpenSSL.
  /// Null where it refuses the file, since it is missing or holds no certificate; the next call tries again. For one
  /// thread; whoever takes a share of the store must let go before the bundle does.
  X509_STORE* store();

 private:
  struct Root;
  struct FreeStore {
    void operator()(X509_STORE* store) const { X509_STORE_free(store); }
  };
  struct FreeMethod {
    void operator()(X509_LOOKUP_METHOD* method) const { X509_LOOKUP_meth_free(method); }
  };
  using Store = std::unique_ptr<X509_STORE, FreeStore>;

  bool readRoots();
  bool addLookup(X509_STORE* store);
  static int findBySubject(X509_LOOKUP* lookup, X509_LOOKUP_TYPE type, const X509_NAME* subject, X509_OBJECT* found);

  const std::string file_;
  std::vector<Root> roots_;
  std::unique_ptr<X509_LOOKUP_METHOD, FreeMethod> method_;
  Store store_;
};

}  // namespace platform
