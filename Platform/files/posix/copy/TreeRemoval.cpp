#include "Platform/files/posix/copy/TreeRemoval.h"

#include <fcntl.h>
#include <unistd.h>

#include "Platform/files/posix/copy/TreeWalk.h"

namespace halvorn {

bool removeTree(const ItemPlace& place) {
  // Asked first, since it decides whether anything in here may be removed at all.
  if (::unlinkat(place.folder.get(), place.name.c_str(), 0) == 0) return true;
  if (errno != EISDIR && errno != EPERM) return false;
  const TreeVisitor remover{
      .visitItem = [](int folder,
                      const std::string& name) { return ::unlinkat(folder, name.c_str(), 0) == 0; },
      .visitFolder =
          [](int folder, const std::string& name) {
            return ::unlinkat(folder, name.c_str(), AT_REMOVEDIR) == 0;
          }};
  return walkTree(place.folder.get(), place.name, remover);
}

}  // namespace halvorn
