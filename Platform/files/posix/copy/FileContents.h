// The bytes of a file.
#pragma once

#include <sys/stat.h>

#include <functional>
#include <span>

#include "Platform/files/posix/copy/Cause.h"
#include "Platform/files/posix/copy/Trial.h"

namespace halvorn::FileContents {

// Whether the original takes less room than its size, as a file with holes does.
[[nodiscard]] bool mayHaveHoles(const struct stat& facts);

struct Original {
  int file = -1;
  Trial& asking;                            // whether it can be said what of it is in memory
  const std::function<void()>& sawMissing;  // called when something has to be fetched from a disk
};

// Fills the new file from `start` up to `end`. Fails: also when the original ends before.
Cause copyRange(const Original& original, int target, off_t start, off_t end, std::span<char> buffer);

// The same, but what is in memory is copied from file to file by the system where it can,
// without a way through this process.
Cause copyRangeInSystem(const Original& original, int target, off_t start, off_t end, std::span<char> buffer,
                        Trial& copiesInSystem);

// The same through a mapping of the original, by so many bytes at a time; for files that are worth it.
Cause copyRangeMapped(const Original& original, int target, off_t start, off_t end, std::span<char> buffer,
                      Trial& mappings, off_t window);

// The same for a whole file with holes; the copy has them in the same places.
Cause copyWithHoles(const Original& original, int target, off_t size, std::span<char> buffer);

}  // namespace halvorn::FileContents
