#include "protocol/json_rpc/line_writer.hpp"

#include <cassert>

#include "base/descriptors/write_all.hpp"

namespace protocol::json_rpc {

std::expected<void, std::error_code> LineWriter::write(std::string line) {
  assert(line.find('\n') == std::string::npos);
  line += '\n';
  const std::lock_guard lock(mutex_);
  if (!failure_) failure_ = base::writeAll(descriptor_, line);
  if (failure_) return std::unexpected(failure_);
  return {};
}

}  // namespace protocol::json_rpc
