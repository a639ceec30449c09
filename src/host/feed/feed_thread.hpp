// A feed on a thread of its own, for hosts whose main thread belongs to a window toolkit: an extension may take
// half a minute to answer, and windows must react meanwhile.
#pragma once

#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "base/descriptors/file_descriptor.hpp"
#include "host/feed/feed.hpp"

namespace host {

/// The listener is called on the feed's thread. Between its wake-ups the thread sleeps in poll(2).
class FeedThread {
 public:
  using Task = std::function<void(Feed&)>;

  /// Throws std::system_error where the system gives no descriptor or thread for it, as std::jthread does.
  FeedThread(ExtensionSettings settings, FeedListener listener, Feed::Placeholders placeholders);
  /// Interrupts what the feed is doing, ends its extension and joins the thread.
  ~FeedThread();
  FeedThread(const FeedThread&) = delete;
  FeedThread& operator=(const FeedThread&) = delete;

  /// Runs the task on the feed's thread, soon: a load under way is interrupted for it and begins again afterwards.
  void post(Task task);

 private:
  void run(Feed& feed);
  std::vector<Task> takePosted();

  SystemTimekeeper time_;
  base::FileDescriptor wake_;  ///< readable while something is posted; interrupts a load
  std::mutex mutex_;
  std::vector<Task> posted_;
  bool ending_ = false;
  std::jthread thread_;  // last: it uses the others
};

}  // namespace host
