#include "protocol/json_rpc/line_reader.hpp"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include <unistd.h>

namespace protocol::json_rpc {
namespace {

constexpr std::size_t smallestRead = std::size_t{64} << 10;
// A buffer that a long line has made larger than this is freed after the line has been returned.
constexpr std::size_t keptStorage = std::size_t{1} << 20;

}  // namespace

LineReader::Result LineReader::next() {
  while (true) {
    const char* const unscanned = storage_.get() + scanned_;
    const void* const found = end_ > scanned_ ? std::memchr(unscanned, '\n', end_ - scanned_) : nullptr;
    if (found != nullptr) {
      const auto lineEnd = static_cast<std::size_t>(static_cast<const char*>(found) - storage_.get());
      if (!skipping_) return takeLine(lineEnd);
      skipping_ = false;
      begin_ = scanned_ = lineEnd + 1;
      continue;
    }
    scanned_ = end_;
    if (skipping_) {
      begin_ = scanned_ = end_ = 0;
    } else if (end_ - begin_ > maximumLength_) {
      skipping_ = true;
      begin_ = scanned_ = end_ = 0;
      resize(0);
      return {.status = Status::tooLong};
    }
    if (const Result result = readMore(); result.status != Status::line) return result;
  }
}

LineReader::Result LineReader::takeLine(std::size_t lineEnd) {
  const std::string_view text(storage_.get() + begin_, lineEnd - begin_);
  begin_ = scanned_ = lineEnd + 1;
  // The read that passed the limit may have brought the line's end too.
  if (text.size() > maximumLength_) return {.status = Status::tooLong};
  return {.status = Status::line, .text = text};
}

// Status::line means that there are new bytes to look at, or that the last line is complete.
LineReader::Result LineReader::readMore() {
  if (begin_ > 0) {
    std::memmove(storage_.get(), storage_.get() + begin_, end_ - begin_);
    end_ -= begin_;
    scanned_ -= begin_;
    begin_ = 0;
  }
  if (capacity_ > keptStorage && end_ < smallestRead) resize(keptStorage);
  if (capacity_ - end_ < smallestRead) {
    resize(std::max(end_ + smallestRead, std::min(2 * capacity_, maximumLength_ + smallestRead)));
  }
  while (true) {
    // One byte stays free for the line end that a last line may lack.
    const ssize_t count = ::read(descriptor_, storage_.get() + end_, capacity_ - end_ - 1);
    if (count > 0) {
      end_ += static_cast<std::size_t>(count);
      return {.status = Status::line};
    }
    if (count == 0) {
      if (begin_ == end_) return {.status = Status::endOfInput};
      storage_[end_++] = '\n';
      return {.status = Status::line};
    }
    if (errno == EINTR) continue;
    if (errno == EAGAIN || errno == EWOULDBLOCK) return {.status = Status::wouldBlock};
    return {.status = Status::failed, .error = errno};
  }
}

// What is not written to stays out of memory.
void LineReader::resize(std::size_t capacity) {
  auto storage = std::make_unique_for_overwrite<char[]>(capacity);
  if (end_ > 0) std::memcpy(storage.get(), storage_.get(), end_);
  storage_ = std::move(storage);
  capacity_ = capacity;
}

}  // namespace protocol::json_rpc
