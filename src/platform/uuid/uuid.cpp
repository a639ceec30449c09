#include "platform/uuid/uuid.hpp"

#include <uuid/uuid.h>

namespace platform {

std::optional<Uuid> Uuid::parse(std::string_view text) {
  Uuid uuid;
  if (uuid_parse_range(text.data(), text.data() + text.size(), uuid.bytes.data()) != 0) return std::nullopt;
  return uuid;
}

Uuid Uuid::random() {
  Uuid uuid;
  uuid_generate_random(uuid.bytes.data());
  return uuid;
}

std::string Uuid::text() const {
  std::array<char, UUID_STR_LEN> buffer{};
  uuid_unparse_lower(bytes.data(), buffer.data());
  return buffer.data();
}

}  // namespace platform

std::size_t std::hash<platform::Uuid>::operator()(const platform::Uuid& uuid) const noexcept {
  // The service may hand out identifiers that are anything but random, so all sixteen bytes count.
  return std::hash<std::string_view>{}({reinterpret_cast<const char*>(uuid.bytes.data()), uuid.bytes.size()});
}
