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

// A grown block would leave its bytes where it was.
void* moveToLarger(void* bytes, std::size_t size) noexcept {
  if (bytes == nullptr) return std::malloc(size);
  void* const larger = std::malloc(size);
  if (larger == nullptr) return nullptr;
  std::memcpy(larger, bytes, std::min(size, malloc_usable_size(bytes)));
  wipeAndFree(bytes);
  return larger;
}

}  // namespace

bool httpLibraryIsReady() {
  // Left to itself, the TLS library would take itself down at exit before the sessions that were made before it, which
  // then close their connections without it.
  static const bool ready = OPENSSL_init_ssl(OPENSSL_INIT_NO_ATEXIT, nullptr) == 1 &&
                            curl_global_init_mem(CURL_GLOBAL_DEFAULT, std::malloc, wipeAndFree, moveToLarger, strdup,
                                                 std::calloc) == CURLE_OK;
  return ready;
}

}  // namespace platform
