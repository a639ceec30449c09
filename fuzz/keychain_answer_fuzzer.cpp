// Any answer of the keychain: the first byte is its status, the rest the item's bytes. Only a found item in UTF-8
// becomes a token, with exactly its bytes, and it is sent in one header field or not at all.
#include <cstdint>
#include <optional>
#include <string_view>

#include "base/text/utf8.hpp"
#include "platform/keychain/keychain.hpp"
#include "platform/url_session/request_headers.hpp"
#include "require.hpp"
#include "widzety/api/pek_kluczy.hpp"

namespace {

using fuzz::require;
using platform::KeychainResult;
using platform::KeychainStatus;

/// Gives the same answer to every question.
class OneAnswer final : public platform::Keychain {
 public:
  OneAnswer(KeychainStatus status, std::optional<std::string_view> data) : status_(status), data_(data) {}

 private:
  KeychainResult find(const platform::KeychainQuery&, base::Deadline) override {
    return {status_, data_ ? std::optional(base::SecretText(*data_)) : std::nullopt};
  }
  KeychainStatus erase(const platform::KeychainQuery&, base::Deadline) override { return status_; }

  KeychainStatus status_;
  std::optional<std::string_view> data_;
};

void send(std::string_view token) {
  const auto headers = platform::RequestHeaders::encode({{"Authorization", base::SecretText({"Bearer ", token})}});
  if (!headers) return;
  require(headers->lines.size() == (headers->endsInLineEnd ? 2U : 1U));
  std::string_view line = headers->lines.back().text();
  require(line.starts_with("Authorization: Bearer "));
  if (headers->endsInLineEnd) line.remove_suffix(line.ends_with("\r\n") ? 2 : 1);
  require(line.find_first_of(std::string_view("\r\n\0", 3)) == std::string_view::npos);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const auto status = static_cast<KeychainStatus>(data[0] % 9);
  const bool hasData = (data[0] & 0x80) == 0;
  const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
  OneAnswer keychain(status, hasData ? std::optional(bytes) : std::nullopt);
  const auto token = widzety::PekKluczy(keychain).czytaj(widzety::kontoTokenu);
  require(token.has_value() == (status == KeychainStatus::success && hasData && base::isUtf8(bytes)));
  if (!token) return 0;
  require(token->text() == bytes);
  send(token->text());
  return 0;
}
