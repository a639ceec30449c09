#include "protocol/json_rpc/line_writer.hpp"

#include <cassert>
#include <string>

#include "base/descriptors/write_all.hpp"

namespace protocol::json_rpc {

std::expected<void, std::error_code> LineWriter::write(std::string_view line) {
  assert(line.find('\n') == std::string_view::npos);
  const std::string whole = std::string(line) + '\n';
  const std::lock_guard lock(mutex_);
  if (!failure_) failure_ = base::writeAll(descriptor_, whole);
  if (failure_) return std::unexpected(failure_);
  return {};
}

}  // namespace protocol::json_rpc
