// A file so big that several threads copy it side by side.
#pragma once

#include <sys/stat.h>

#include <atomic>
#include <memory>

#include "Platform/files/posix/copy/CopyContext.h"
#include "Platform/files/posix/copy/CopyScratch.h"
#include "Platform/running/posix/FileDescriptor.h"

namespace halvorn {

class BigFile {
 public:
  [[nodiscard]] static bool isBig(const struct stat& facts);

  // Fills and finishes the new, empty file. Returns when this thread has nothing more to do for it; others
  // may still be at work. Fails: false, or the context is told later.
  [[nodiscard]] static bool copy(CopyContext& context, CopyScratch& scratch, FileDescriptor source,
                                 FileDescriptor target, const struct stat& facts, const struct stat& made,
                                 MayInherit mayInherit);

  // The last one out finishes the file.
  ~BigFile();
  BigFile(const BigFile&) = delete;
  BigFile& operator=(const BigFile&) = delete;

 private:
  BigFile(CopyContext& context, FileDescriptor source, FileDescriptor target, const struct stat& facts,
          const struct stat& made, MayInherit mayInherit);
  // Takes ranges until none is left.
  void copyRanges(CopyScratch& scratch, const std::shared_ptr<BigFile>& self);
  [[nodiscard]] bool copyRange(CopyScratch& scratch, off_t start);
  // Asks for one more thread that has nothing better to do.
  static void offerHelp(const std::shared_ptr<BigFile>& file);
  void help(CopyScratch& scratch, const std::shared_ptr<BigFile>& self);

  CopyContext& context_;
  FileDescriptor source_;
  FileDescriptor target_;
  const struct stat facts_;
  const struct stat made_;
  const MayInherit mayInherit_;
  std::atomic<off_t> next_ = 0;
  std::atomic<unsigned> threads_ = 0;  // at work in here
};

}  // namespace halvorn
