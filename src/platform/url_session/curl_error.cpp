#include "platform/url_session/curl_error.hpp"

#include <string_view>

namespace platform {
namespace {

using Kind = TransportError::Kind;

Kind kindOf(CURLcode code) {
  switch (code) {
    case CURLE_OPERATION_TIMEDOUT:
      return Kind::timedOut;
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_RESOLVE_PROXY:
      return Kind::cannotResolve;
    case CURLE_COULDNT_CONNECT:
    case CURLE_PROXY:
      return Kind::cannotConnect;
    case CURLE_SSL_CONNECT_ERROR:
    case CURLE_PEER_FAILED_VERIFICATION:
    case CURLE_SSL_CERTPROBLEM:
    case CURLE_SSL_CIPHER:
    case CURLE_SSL_CACERT_BADFILE:
    case CURLE_SSL_ISSUER_ERROR:
    case CURLE_SSL_INVALIDCERTSTATUS:
    case CURLE_USE_SSL_FAILED:
      return Kind::secureConnectionFailed;
    case CURLE_URL_MALFORMAT:
    case CURLE_UNSUPPORTED_PROTOCOL:
      return Kind::unsupportedUrl;
    case CURLE_GOT_NOTHING:
    case CURLE_SEND_ERROR:
    case CURLE_RECV_ERROR:
    case CURLE_PARTIAL_FILE:
    case CURLE_WEIRD_SERVER_REPLY:
    case CURLE_HTTP2:
    case CURLE_HTTP2_STREAM:
      return Kind::connectionLost;
    case CURLE_FILESIZE_EXCEEDED:
      return Kind::tooLarge;
    default:
      return Kind::other;
  }
}

}  // namespace

TransportError transportError(CURLcode code, const char* detail) {
  const bool isOnCertificate = std::string_view(detail).starts_with("SSL certificate problem: ");
  return {kindOf(code), static_cast<int>(code), isOnCertificate ? detail : curl_easy_strerror(code)};
}

}  // namespace platform
