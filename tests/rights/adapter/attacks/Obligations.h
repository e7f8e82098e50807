// What the administrator's tool owes for each call with a name in a folder that another user may write.
// Why: docs/decisions/027-attacks-and-fuzzing.md
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "tests/rights/adapter/attacks/ToolRecord.h"

namespace halvorn {

// Between two calls somebody else may put something else under any name in such a folder. So each call there
// owes one thing or more:
//
//   no link followed       the name is one step, in a folder that is held, and leads through no link
//   made exclusively       what is made or moved there is never laid over something
//   compared afterwards    what is then found under the name is looked at, and how old it is, before it is changed
//   changed by descriptor  owner, mode, times, attributes and bytes are those of a descriptor that was looked at
//   given after a look     what becomes the person's was looked at, and so was what is mounted
//
// A call with a name that is not known here owes an explanation and has none.
struct Judgement {
  std::map<std::string, int> obligations;  // how many of each kind
  std::vector<std::string> violations;

  [[nodiscard]] int count() const;
};

// The record was made with "-y", so that each descriptor has its path beside it. `isOpen` says of a folder
// whether anybody but root may put names into it.
[[nodiscard]] Judgement judge(const std::vector<Call>& calls,
                              const std::function<bool(const std::string& folder)>& isOpen);

}  // namespace halvorn
