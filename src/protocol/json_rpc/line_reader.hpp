// Splits what arrives on a descriptor into lines. It keeps at most one line of the permitted length in memory,
// whatever the other side sends.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

namespace protocol::json_rpc {

/// The longest line that either side of the protocol reads, in bytes without the line end.
inline constexpr std::size_t maximumLineLength = std::size_t{64} << 20;

class LineReader {
 public:
  enum class Status {
    line,        ///< `text` holds one line
    tooLong,     ///< a line passed the limit; reported once, as soon as it is known; the rest of the line is skipped
    wouldBlock,  ///< a non-blocking descriptor has nothing more for now
    endOfInput,
    failed,  ///< read(2) failed with `error`
  };

  struct Result {
    Status status;
    std::string_view text = {};  ///< without "\n"; valid until the next call
    int error = 0;               ///< an errno value
  };

  /// Does not own `descriptor`, which may be blocking or not.
  explicit LineReader(int descriptor, std::size_t maximumLength = maximumLineLength)
      : descriptor_(descriptor), maximumLength_(maximumLength) {}

  /// The next line. Text before the end of input counts as a line too.
  Result next();

 private:
  Result takeLine(std::size_t lineEnd);
  Result readMore();

  int descriptor_;
  std::size_t maximumLength_;
  void resize(std::size_t capacity);

  std::unique_ptr<char[]> storage_;  // bytes [begin_, end_) are read and not yet handed out
  std::size_t capacity_ = 0;
  std::size_t begin_ = 0;
  std::size_t scanned_ = 0;  // no line end in [begin_, scanned_)
  std::size_t end_ = 0;
  bool skipping_ = false;  // inside a line that was reported as too long
};

}  // namespace protocol::json_rpc
