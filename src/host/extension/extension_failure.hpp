// What can go wrong with an extension, as its host sees it.
#pragma once

#include <string>

namespace host {

struct ExtensionFailure {
  enum class Kind {
    cannotStart,
    died,         ///< ended, or closed one of its streams, before it answered
    timedOut,     ///< silent until the deadline
    nonsense,     ///< what it wrote is no answer
    tooLong,      ///< what it wrote is more than a host reads
    refused,      ///< answered with an error (JSON-RPC 2.0, section 5.1)
    interrupted,  ///< the caller's `interruption` became readable
  };

  Kind kind;
  std::string message;  ///< one sentence for a person, without a full stop
};

}  // namespace host
