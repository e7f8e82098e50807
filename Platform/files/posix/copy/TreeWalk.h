// Visits everything in a folder, depth first, by descriptor and following no link. However deep the tree,
// three descriptors are open: the folders above are reached through "..", and what is found there must be
// what was left.
#pragma once

#include <functional>
#include <string>

namespace halvorn {

struct TreeVisitor {
  // Something that is no folder. `folder` is the folder it is in.
  std::function<bool(int folder, const std::string& name)> visitItem;
  // A folder, after everything in it. `folder` is the one it is in.
  std::function<bool(int folder, const std::string& name)> visitFolder;
};

// Visits what is in the folder `name` of `folder`, then that folder itself; or just the item when it is no
// folder. Folders on other file systems than the item's are neither entered nor visited. A visitor that
// answers false does not stop the walk. Fails: false when a visitor said so, or when anything could not be
// visited.
[[nodiscard]] bool walkTree(int folder, const std::string& name, const TreeVisitor& visitor);

}  // namespace halvorn
