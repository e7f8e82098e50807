#include "Platform/files/posix/copy/FolderListing.h"

#include <unistd.h>

#include <algorithm>
#include <string_view>

#include "Platform/files/posix/copy/SystemCalls.h"
#include "Platform/running/posix/FileDescriptor.h"

namespace halvorn {

namespace {
constexpr std::size_t kBufferSize = 32UL * 1024;
}

FolderListing::FolderListing() : buffer_(new char[kBufferSize]) {}

void FolderListing::start(int folder) {
  folder_ = folder;
  (void)::lseek(folder, 0, SEEK_SET);
}

FolderListing::Answer FolderListing::readSome() {
  entries_.clear();
  const ssize_t size = SystemCalls::readEntries(folder_, buffer_.get(), kBufferSize, entries_);
  if (size < 0) return Answer::Failed;
  if (size == 0) return Answer::End;
  std::erase_if(entries_, [](const FolderEntry& entry) {
    const std::string_view name = entry.name;
    return name == "." || name == "..";
  });
  std::sort(entries_.begin(), entries_.end(),
            [](const FolderEntry& a, const FolderEntry& b) { return a.number < b.number; });
  return Answer::Some;
}

}  // namespace halvorn
