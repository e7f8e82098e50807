// What the cases of the contract are asked of: a Trash, and a folder whose items go there.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Platform/files/FileManager.h"
#include "Platform/files/Trash.h"

namespace halvorn {

class TrashWorld {
 public:
  virtual ~TrashWorld() = default;
  virtual Trash& trash() = 0;
  virtual FileManager& files() = 0;
  virtual std::string folder() const = 0;
  virtual void addFile(const std::string& path, const std::string& contents) = 0;
  // What lies in the Trash as having come from that path; empty when nothing does.
  virtual std::string trashedContents(const std::string& path) = 0;
  // Does the work while this person may not change the folder.
  virtual void whereNothingMayBeTakenOut(const std::function<void()>& work) = 0;
};

// One of those that this program was built with.
struct NamedTrashWorld {
  const char* name;
  std::unique_ptr<TrashWorld> (*make)();
};
[[nodiscard]] const std::vector<NamedTrashWorld>& trashWorlds();

}  // namespace halvorn
