// The process's own standard output and standard error.
//
// The descriptors 1 and 2 stay what they are for programs started from here: their output streams.
// Why: docs/decisions/026-streams-and-scripts.md
#pragma once

#include "Platform/running/StandardStreams.h"

namespace halvorn {

class PosixStandardStreams : public StandardStreams {
 public:
  // `logsFolder` is guaranteed: where it is missing, it is made (0700, with the folders above it) when a
  // stream is reopened on a file below it. Empty: no folder is made.
  explicit PosixStandardStreams(const Text& logsFolder = Text());

  // A stream that is closed keeps its descriptor's number taken, so that no other file ever gets it.
  bool reopen(Stream stream, const Text& path) override;

 private:
  Text logsFolder_;
};

}  // namespace halvorn
