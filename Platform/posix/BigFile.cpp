#include "Platform/posix/BigFile.h"

#include <memory>
#include <utility>

#include "Platform/posix/FileContents.h"
#include "Platform/posix/SystemCalls.h"

namespace halvorn {
namespace {

constexpr off_t rangeSize = off_t{4} << 20;
constexpr off_t leastRanges = 4;

}  // namespace

bool BigFile::isBig(const struct stat& facts) { return facts.st_size >= leastRanges * rangeSize; }

BigFile::BigFile(CopyContext& context, FileDescriptor source, FileDescriptor target, const struct stat& facts,
                 const struct stat& made, MayInherit mayInherit)
    : context_(context),
      source_(std::move(source)),
      target_(std::move(target)),
      facts_(facts),
      made_(made),
      mayInherit_(mayInherit) {}

bool BigFile::copy(CopyContext& context, CopyScratch& scratch, FileDescriptor source, FileDescriptor target,
                   const struct stat& facts, const struct stat& made, MayInherit mayInherit) {
  if (!SystemCalls::reserve(target.get(), facts.st_size)) return false;
  const std::shared_ptr<BigFile> file(
      new BigFile(context, std::move(source), std::move(target), facts, made, mayInherit));
  const off_t ranges = facts.st_size / rangeSize;
  for (off_t helper = 1; helper < ranges && context.queue.isHungry(); ++helper) {
    context.queue.add([file](CopyScratch& theirs) { file->copyRanges(theirs); });
  }
  file->copyRanges(scratch);
  return true;
}

void BigFile::copyRanges(CopyScratch& scratch) {
  while (!context_.hasFailed()) {
    const off_t start = next_.fetch_add(rangeSize);
    if (start >= facts_.st_size) return;
    const off_t end = std::min(start + rangeSize, facts_.st_size);
    const auto sawMissing = [&] {
      context_.sawMissing();
      SystemCalls::fetchAhead(source_.get(), start, end - start);
    };
    if (!FileContents::copyRange(source_.get(), target_.get(), start, end, scratch.buffer(), sawMissing)) {
      context_.fail();
    }
  }
}

BigFile::~BigFile() {
  if (context_.hasFailed()) return;
  const bool isFinished =
      context_.giver.finishFile(source_.get(), target_.get(), facts_, made_, mayInherit_) &&
      target_.closeAfterWriting();
  if (!isFinished) context_.fail();
}

}  // namespace halvorn
