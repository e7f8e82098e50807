// Somebody who swaps names while the administrator's tool works.
#pragma once

#include <sys/types.h>

#include <atomic>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/PolkitWorld.h"

namespace halvorn {

// Swaps each name with its partner again and again, in a process of that user's, until it is dropped.
class Racer {
 public:
  using Pairs = std::vector<std::pair<std::string, std::string>>;
  explicit Racer(const Pairs& pairs, uid_t user = PolkitWorld::personId);
  ~Racer();
  Racer(const Racer&) = delete;
  Racer& operator=(const Racer&) = delete;

  [[nodiscard]] long swaps() const { return swaps_->load(); }

 private:
  using Count = std::atomic<long>;
  Count* swaps_ = nullptr;
  pid_t process_ = -1;
};

}  // namespace halvorn
