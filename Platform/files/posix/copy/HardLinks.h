// Remembers where the files with several names were copied to, so that their other
// names become names of the same copy.
#pragma once

#include <sys/stat.h>

#include <condition_variable>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

#include "Platform/files/posix/copy/Cause.h"

namespace halvorn {

// The way from the copy's top folder down to a folder in it. Shared, so that a deep
// tree costs one name per folder.
struct FolderPath {
  std::shared_ptr<const FolderPath> above;  // null: the folder the copy's top item stands in
  std::string name;
};

// Thread: any. Only those who come with names of one file wait for each other.
class HardLinks {
 public:
  enum class Answer {
    Made,    // by `make`; the caller goes on with it
    Linked,  // to the earlier copy; nothing more to do
  };
  using Identity = std::pair<dev_t, ino_t>;
  // Makes a copy and says which item it is.
  using Make = std::function<OrCause<Identity>()>;

  // `top` is the folder that the copied item is put into.
  explicit HardLinks(int top) : top_(top) {}

  // Makes the copy's entry `name` in `folder`, whose way down is `path`: by `make`, or as one more name of a
  // copy made before. `facts` are the original's. Where the file system has no more names to give, `make`
  // makes another copy. Whoever waited for a copy that failed is told that the other one tells why.
  OrCause<Answer> makeOrLink(const struct stat& facts, int folder, const char* name,
                             const std::shared_ptr<const FolderPath>& path, const Make& make);

 private:
  class Making;
  struct Copy {
    std::shared_ptr<const FolderPath> folder;
    std::string name;
    nlink_t namesLeft = 0;
    std::optional<Identity> identity;  // of the copy; none: somebody is making it
  };
  Cause link(const Copy& copy, int folder, const char* name,
             const std::shared_ptr<const FolderPath>& path) const;

  int top_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::map<Identity, Copy> copies_;  // by the original
};

}  // namespace halvorn
