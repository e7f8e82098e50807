// Visits everything in a folder, depth first, by descriptor and following no link. However
// deep the tree, three descriptors are open: the folders above are reached through "..", and
// what is found there must be what was left.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "Platform/files/posix/copy/Cause.h"

namespace halvorn {

struct TreeVisitor {
  // Something that is no folder. `folder` is the folder it is in.
  std::function<Cause(int folder, const std::string& name)> visitItem;
  // A folder, after everything in it. `folder` is the one it is in.
  std::function<Cause(int folder, const std::string& name)> visitFolder;
  // Of an open folder. One that says no is neither entered nor visited. None: all are entered.
  std::function<Cause(int folder)> refuse = {};
};

struct WalkFailure {
  Cause cause;
  std::string path;  // below the item that the walk began with, "/a/b"; empty for that item
};

// Visits what is in the folder `name` of `folder`, then that folder itself; or just the item when it is no
// folder. Where something is mounted below it, that is neither entered nor visited. A visitor that
// fails does not stop the walk. Fails: answers the first that a visitor said, or that could not be visited.
[[nodiscard]] std::optional<WalkFailure> walkTree(int folder, const std::string& name,
                                                  const TreeVisitor& visitor);

}  // namespace halvorn
