// Output streams that only remember where they were sent.
#pragma once

#include <set>
#include <utility>
#include <vector>

#include "Platform/running/StandardStreams.h"

namespace halvorn {

class FakeStandardStreams : public StandardStreams {
 public:
  bool reopen(Stream stream, const Text& path) override {
    reopened.emplace_back(stream, path);
    return !unopenable.contains({stream, path});
  }

  // Every request in order, also those that failed.
  std::vector<std::pair<Stream, Text>> reopened;
  std::set<std::pair<Stream, Text>> unopenable;
};

}  // namespace halvorn
