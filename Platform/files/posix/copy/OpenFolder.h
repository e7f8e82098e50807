// A folder that is being copied: the original and the copy, both held open while anybody puts something in.
#pragma once

#include <sys/stat.h>

#include <memory>
#include <string>

#include "Platform/files/posix/copy/CopyContext.h"
#include "Platform/files/posix/copy/FileMetadata.h"
#include "Platform/files/posix/copy/HardLinks.h"
#include "Platform/files/posix/copy/NewItems.h"
#include "Platform/running/posix/FileDescriptor.h"

namespace halvorn {

class OpenFolder {
 public:
  // Makes the copy `targetName` in `targetFolder` and opens both. `path` is the way down to `targetFolder`.
  // Null: failed, and the context knows.
  [[nodiscard]] static std::shared_ptr<OpenFolder> make(CopyContext& context, int sourceFolder,
                                                        const char* name, int targetFolder,
                                                        const char* targetName,
                                                        std::shared_ptr<const FolderPath> path,
                                                        MayInherit mayInherit);
  // When the last user is gone, everything is in: the copy gets its mode and times.
  ~OpenFolder();
  OpenFolder(const OpenFolder&) = delete;
  OpenFolder& operator=(const OpenFolder&) = delete;

  [[nodiscard]] int source() const { return source_.get(); }
  [[nodiscard]] int target() const { return target_.get(); }
  [[nodiscard]] const std::shared_ptr<const FolderPath>& path() const { return path_; }
  // What was made in the copy so far.
  [[nodiscard]] NewItems& newItems() const { return newItems_; }

  // Closes both for as long as something far below is copied, and opens them again through "..", from a
  // child. What is found there must be the same folders, or the context is told. One user only.
  void park();
  void unpark(const OpenFolder& child);
  [[nodiscard]] bool isParked() const { return !source_.isOpen(); }

  // Tells the context what went wrong with the folder itself.
  void fail(const Cause& cause) const noexcept;

 private:
  OpenFolder(CopyContext& context, FileDescriptor source, FileDescriptor target);

  CopyContext& context_;
  FileDescriptor source_;
  FileDescriptor target_;
  struct stat facts_ {};
  struct stat made_ {};
  LaterAttributes later_;
  std::shared_ptr<const FolderPath> path_;
  mutable NewItems newItems_;
};

}  // namespace halvorn
