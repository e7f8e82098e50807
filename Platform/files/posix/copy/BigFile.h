// A file so big that several threads copy it side by side.
#pragma once

#include <sys/stat.h>

#include <atomic>
#include <memory>
#include <string>

#include "Platform/files/posix/copy/CopyContext.h"
#include "Platform/files/posix/copy/CopyScratch.h"
#include "Platform/running/posix/FileDescriptor.h"

namespace halvorn {

class BigFile {
 public:
  [[nodiscard]] static bool isBig(const struct stat& facts);

  // Fills and finishes the new, empty file. Returns when this thread has nothing more to do for it; others
  // may still be at work. Fails: at once, or the context is told later.
  static Cause copy(CopyContext& context, CopyScratch& scratch, FileDescriptor source, FileDescriptor target,
                    const struct stat& facts, const struct stat& made, const CopyPlace& place);

  // The last one out finishes the file.
  ~BigFile();
  BigFile(const BigFile&) = delete;
  BigFile& operator=(const BigFile&) = delete;

 private:
  BigFile(CopyContext& context, FileDescriptor source, FileDescriptor target, const struct stat& facts,
          const struct stat& made, const CopyPlace& place);
  // Takes ranges until none is left.
  void copyRanges(CopyScratch& scratch, const std::shared_ptr<BigFile>& self);
  void copyAndCount(CopyScratch& scratch, off_t start);
  Cause copyRange(CopyScratch& scratch, off_t start);
  void fail(const Cause& cause) const noexcept { context_.fail(cause, path_.get(), name_.c_str()); }
  Cause finish();
  // Asks for one more thread that has nothing better to do.
  static void offerHelp(const std::shared_ptr<BigFile>& file);
  void help(CopyScratch& scratch, const std::shared_ptr<BigFile>& self);

  CopyContext& context_;
  FileDescriptor source_;
  FileDescriptor target_;
  const struct stat facts_;
  const struct stat made_;
  const std::shared_ptr<const FolderPath> path_;  // as in the place
  const std::string name_;
  const MayInherit mayInherit_;
  std::atomic<off_t> next_ = 0;
  std::atomic<unsigned> threads_ = 0;  // at work in here
};

}  // namespace halvorn
