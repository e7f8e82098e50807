// The memory that one thread works in while it copies, made once.
#pragma once

#include <cstddef>
#include <memory>
#include <span>

#include "Platform/files/posix/copy/FolderListing.h"

namespace halvorn {

struct CopyScratch {
  // Small enough to stay in the processor's own memory between reading and writing. The file system gets room
  // for what is written in one go in one piece of memory, and pieces of twice that size have to be searched
  // for when memory is in use.
  static constexpr std::size_t bufferSize = std::size_t{128} * 1024;

  [[nodiscard]] std::span<char> buffer() { return {memory.get(), bufferSize}; }

  FolderListing listing;
  std::unique_ptr<char[]> memory{new char[bufferSize]};
};

}  // namespace halvorn
