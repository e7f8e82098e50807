// One thread's way through a folder that is being copied. Goes down itself and hands folders and files over
// to others whenever they have nothing to do.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/files/posix/copy/CopyContext.h"
#include "Platform/files/posix/copy/CopyScratch.h"
#include "Platform/files/posix/copy/OpenFolder.h"

namespace halvorn {

class FolderWalk {
 public:
  FolderWalk(CopyContext& context, CopyScratch& scratch) : context_(context), scratch_(scratch) {}

  // Fills the folder, which was just made, with everything.
  void run(std::shared_ptr<OpenFolder> folder);

 private:
  struct Level {
    std::shared_ptr<OpenFolder> folder;
    std::string folders = {};    // names, each with its NUL
    std::size_t nextFolder = 0;  // where in them
  };

  void enter(std::shared_ptr<OpenFolder> folder);
  void leave();
  void visit(const std::shared_ptr<OpenFolder>& folder, Level& level);
  void visitEntry(const std::shared_ptr<OpenFolder>& folder, const FolderEntry& entry, Level& level);
  void copyHere(const std::shared_ptr<OpenFolder>& folder);

  CopyContext& context_;
  CopyScratch& scratch_;
  std::vector<Level> levels_;
  std::vector<const char*> files_;
};

}  // namespace halvorn
