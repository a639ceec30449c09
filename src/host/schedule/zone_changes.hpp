// Notices that the device's time zone was changed.
#pragma once

#include <string>

#include "base/descriptors/file_descriptor.hpp"

namespace host {

/// Readable once something happened in the folder of `localtime`, the zone's file (inotify(7)). A process whose
/// environment names a zone keeps that one, and then nothing is watched.
class ZoneChanges {
 public:
  explicit ZoneChanges(const std::string& folder = "/etc");
  /// -1 where nothing is watched, which poll(2) passes over.
  int descriptor() const { return descriptor_.get(); }
  /// Whether the zone's file itself was replaced or rewritten.
  bool take();

 private:
  base::FileDescriptor descriptor_;
};

}  // namespace host
