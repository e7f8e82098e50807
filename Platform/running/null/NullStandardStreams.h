// Streams that cannot be sent anywhere else.
#pragma once

#include "Platform/running/StandardStreams.h"

namespace halvorn {

class NullStandardStreams : public StandardStreams {
 public:
  bool reopen(Stream, const Text&) override { return false; }
};

}  // namespace halvorn
