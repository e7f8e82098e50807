// Reads a folder in big pieces.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <memory>
#include <vector>

namespace halvorn {

struct FolderEntry {
  ino_t number = 0;
  unsigned char type = 0;      // DT_REG and so on; DT_UNKNOWN where the file system does not say
  const char* name = nullptr;  // lives until the listing reads on
};

class FolderListing {
 public:
  enum class Answer { Some, End, Failed };

  FolderListing();

  // Starts over with another open folder, from its first entry.
  void start(int folder);
  // Fills entries() with the next piece, without "." and "..", in the order of the file numbers: that is the
  // order in which they stand on most disks, and in which they were made.
  [[nodiscard]] Answer readSome();
  [[nodiscard]] const std::vector<FolderEntry>& entries() const { return entries_; }

 private:
  int folder_ = -1;
  std::unique_ptr<char[]> buffer_;
  std::vector<FolderEntry> entries_;
};

}  // namespace halvorn
