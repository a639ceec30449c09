#include "platform/url_session/http_library.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>

#include <curl/curl.h>
#include <malloc.h>
#include <openssl/ssl.h>

namespace platform {
namespace {

void wipeAndFree(void* bytes) noexcept {
  if (bytes == nullptr) return;
  explicit_bzero(bytes, malloc_usable_size(bytes));
  std::free(bytes);
}

// std::realloc may move a block and leave its bytes behind.
void* reallocateAndWipe(void* bytes, std::size_t size) noexcept {
  if (bytes == nullptr) return std::malloc(size);
  void* const larger = std::malloc(size);
  if (larger == nullptr) return nullptr;
  std::memcpy(larger, bytes, std::min(size, malloc_usable_size(bytes)));
  wipeAndFree(bytes);
  return larger;
}

}  // namespace

bool startHttpLibrary() {
  // Without NO_ATEXIT the TLS library would be torn down at exit before sessions that were constructed earlier, which
  // still have to close their connections.
  static const bool ready = OPENSSL_init_ssl(OPENSSL_INIT_NO_ATEXIT, nullptr) == 1 &&
                            curl_global_init_mem(CURL_GLOBAL_DEFAULT, std::malloc, wipeAndFree, reallocateAndWipe,
                                                 strdup, std::calloc) == CURLE_OK;
  return ready;
}

std::string defaultCertificateFolder() {
  const curl_version_info_data* const library = curl_version_info(CURLVERSION_NOW);
  const bool tells = library->age >= CURLVERSION_SEVENTH && library->capath != nullptr;
  return tells ? library->capath : std::string();
}

}  // namespace platform
