// The two output streams of the process.
#pragma once

#include "Core/Text.h"

namespace halvorn {

class StandardStreams {
 public:
  enum class Stream { Output, Error };  // of the process

  virtual ~StandardStreams() = default;
  // Reopens the stream on the file for appending, made when missing. False when the file cannot be opened;
  // the stream is then closed until reopened on something else. Thread: main, before others write.
  [[nodiscard]] virtual bool reopen(Stream stream, const Text& path) = 0;
};

}  // namespace halvorn
