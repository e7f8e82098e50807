#include "Platform/files/posix/copy/CopyContext.h"

#include <exception>
#include <utility>
#include <vector>

#include "Platform/files/posix/copy/FileCopy.h"

namespace halvorn {
namespace {

// The item's path in the tree at `top`. The top item itself may be called otherwise in the copy.
std::string pathIn(std::string top, const FolderPath* folder, const char* name) {
  while (top.size() > 1 && top.ends_with('/')) top.pop_back();
  if (folder == nullptr) return top;
  std::vector<const std::string*> names;
  for (; folder->above != nullptr; folder = folder->above.get()) names.push_back(&folder->name);
  for (auto each = names.rbegin(); each != names.rend(); ++each) top.append("/").append(**each);
  return top.append("/").append(name);
}

}  // namespace

void CopyContext::fail(const Cause& cause, const FolderPath* folder, const char* name) noexcept {
  try {
    const std::lock_guard lock(failing_);
    if (!failure_ && !cause.isToldByAnother()) {
      const bool isOfCopy = cause.side() == Cause::Side::Copy;
      failure_ = cause.at(pathIn(isOfCopy ? to_ : from_, folder, name));
    }
  } catch (const std::exception&) {
    // No memory for the words; it is a failure all the same.
  }
  queue.stop();
}

void CopyContext::fail(const Cause& cause, const CopyPlace& place) noexcept {
  fail(cause, place.path.get(), place.name);
}

std::optional<FileFailure> CopyContext::failure() {
  if (!hasFailed()) return std::nullopt;
  if (failure_) return failure_;
  // Whoever stopped could not even say so.
  return Cause::ofSystem(Cause::Operation::Make, Cause::Side::Copy, ENOMEM).at(to_);
}

}  // namespace halvorn
