// Copies what is not a folder.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "Platform/files/posix/copy/CopyContext.h"
#include "Platform/files/posix/copy/CopyScratch.h"
#include "Platform/files/posix/copy/OpenFolder.h"

namespace halvorn {

// Where an item comes from and goes to.
struct CopyPlace {
  int sourceFolder = -1;
  const char* name = nullptr;
  int targetFolder = -1;
  const char* targetName = nullptr;
  std::shared_ptr<const FolderPath> path;  // the way down to the target folder
  NewItems* newItems = nullptr;            // of the target folder; null: not a folder of our own
  MayInherit mayInherit = MayInherit::No;
};

// All of these tell the context when they fail.

// Regular files of one folder. Whatever turns out to be none is copied as what it
// is, a folder apart: that fails.
void copyFiles(CopyContext& context, CopyScratch& scratch, const std::shared_ptr<OpenFolder>& folder,
               std::span<const char* const> names);

// One regular file.
void copyFile(CopyContext& context, CopyScratch& scratch, const CopyPlace& place);

// A link, pipe, socket or device node.
void copyUnopened(CopyContext& context, const CopyPlace& place, const struct stat& facts);

}  // namespace halvorn
