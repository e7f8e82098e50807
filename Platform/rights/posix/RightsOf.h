// Doing something with a person's rights to files. Each system's folder defines it.
#pragma once

#include <sys/types.h>

#include <vector>

#include "Platform/rights/posix/Person.h"

namespace halvorn {

// While it lives, the calling thread reaches files with that person's rights only. No person: changes
// nothing. Thread: other threads keep their rights. Fails: holds() is false, and nothing may then be done.
class RightsOf {
 public:
  explicit RightsOf(const Person* person);
  ~RightsOf();
  RightsOf(const RightsOf&) = delete;
  RightsOf& operator=(const RightsOf&) = delete;
  [[nodiscard]] bool holds() const { return holds_; }

 private:
  bool isChanged_ = false;
  bool holds_ = true;
  std::vector<gid_t> groupsBefore_;
  [[maybe_unused]] gid_t groupBefore_ = 0;  // where a system asks for it
};

}  // namespace halvorn
