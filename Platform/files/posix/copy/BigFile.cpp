#include "Platform/files/posix/copy/BigFile.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "Platform/files/posix/copy/FileContents.h"
#include "Platform/files/posix/copy/FileCopy.h"
#include "Platform/files/posix/copy/SystemCalls.h"

namespace halvorn {
namespace {

constexpr off_t kRangeSize = off_t{4} << 20;
constexpr off_t kLeastRanges = 4;
constexpr unsigned kMostMegabytesMapped = 8;

}  // namespace

bool BigFile::isBig(const struct stat& facts) { return facts.st_size >= kLeastRanges * kRangeSize; }

BigFile::BigFile(CopyContext& context, FileDescriptor source, FileDescriptor target, const struct stat& facts,
                 const struct stat& made, const CopyPlace& place)
    : context_(context),
      source_(std::move(source)),
      target_(std::move(target)),
      facts_(facts),
      made_(made),
      path_(place.path),
      name_(place.name),
      mayInherit_(place.mayInherit) {}

Cause BigFile::copy(CopyContext& context, CopyScratch& scratch, FileDescriptor source, FileDescriptor target,
                    const struct stat& facts, const struct stat& made, const CopyPlace& place) {
  if (!SystemCalls::reserve(target.get(), facts.st_size)) return Cause::ofSystem(Cause::Operation::Write);
  const std::shared_ptr<BigFile> file(
      new BigFile(context, std::move(source), std::move(target), facts, made, place));
  file->copyRanges(scratch, file);
  return {};
}

// Other files come first: the system lets only one thread at a time write to a
// file. An offer keeps nothing open.
void BigFile::offerHelp(const std::shared_ptr<BigFile>& file) {
  file->context_.queue.offerHelp([offered = std::weak_ptr<BigFile>(file)](CopyScratch& scratch) {
    if (const auto wanted = offered.lock()) wanted->help(scratch, wanted);
  });
}

void BigFile::help(CopyScratch& scratch, const std::shared_ptr<BigFile>& self) {
  ++threads_;
  while (next_ < facts_.st_size && !context_.hasFailed() && !context_.queue.hasTasks()) {
    const off_t start = next_.fetch_add(kRangeSize);
    if (start >= facts_.st_size) break;
    copyAndCount(scratch, start);
  }
  --threads_;
  if (next_ < facts_.st_size && !context_.hasFailed()) offerHelp(self);
}

void BigFile::copyRanges(CopyScratch& scratch, const std::shared_ptr<BigFile>& self) {
  ++threads_;
  bool hasAsked = false;
  while (!context_.hasFailed()) {
    if (context_.mayWaitForReads() && !hasAsked) {
      hasAsked = true;
      const auto most = std::min<off_t>((facts_.st_size - next_) / kRangeSize, context_.queue.workers());
      for (off_t helper = 1; helper < most; ++helper) offerHelp(self);
    }
    const off_t start = next_.fetch_add(kRangeSize);
    if (start >= facts_.st_size) break;
    copyAndCount(scratch, start);
  }
  --threads_;
}

void BigFile::copyAndCount(CopyScratch& scratch, off_t start) {
  if (const Cause cause = copyRange(scratch, start)) return fail(cause);
  context_.noteCopied(std::min(kRangeSize, facts_.st_size - start));
}

Cause BigFile::copyRange(CopyScratch& scratch, off_t start) {
  const off_t end = std::min(start + kRangeSize, facts_.st_size);
  const std::function<void()> sawMissing = [&] {
    context_.sawMissing();
    SystemCalls::fetchAhead(source_.get(), start, end - start);
  };
  const FileContents::Original original{
      .file = source_.get(), .asking = context_.asking, .sawMissing = sawMissing};
  // Writing from a mapping keeps the others out for longer than writing what was read before.
  if (threads_ > 1 || context_.isCold())
    return FileContents::copyRange(original, target_.get(), start, end, scratch.buffer());
  // All mappings together count as this process' memory.
  const off_t window = off_t{std::max(kMostMegabytesMapped / context_.queue.workers(), 1u)} << 20;
  return FileContents::copyRangeMapped(original, target_.get(), start, end, scratch.buffer(),
                                       context_.mappings, window);
}

Cause BigFile::finish() {
  const Cause cause = context_.giver.finishFile(source_.get(), target_.get(), facts_, made_, mayInherit_);
  if (cause || target_.closeAfterWriting()) return cause;
  return Cause::ofSystem(Cause::Operation::Write);
}

BigFile::~BigFile() {
  if (context_.hasFailed()) return;
  if (const Cause cause = finish()) fail(cause);
}

}  // namespace halvorn
