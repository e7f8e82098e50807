#include "Platform/files/posix/copy/FileCopy.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <utility>

#include "Platform/files/posix/copy/BigFile.h"
#include "Platform/files/posix/copy/FileContents.h"
#include "Platform/files/posix/copy/SystemCalls.h"

namespace halvorn {
namespace {

// Nothing here waits for the other end of a pipe, follows a link or gets a terminal.
constexpr int kOpenToRead = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
constexpr int kCreate = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;

// A handful of files is opened at a time: changing rights costs more than opening, and a disk that is asked
// for several files at once fetches them faster.
constexpr std::size_t kHandful = 16;

using Operation = Cause::Operation;

struct OpenOriginal {
  FileDescriptor file;
  struct stat facts {};
  Cause cause;  // when it is not open
};

// Reading leaves the time of the last access alone where this process may do that.
FileDescriptor openToCopy(CopyContext& context, int folder, const char* name) {
  const int quietly = context.quietReading.isWorthTrying() ? SystemCalls::openQuietly : 0;
  FileDescriptor file(retried([&] { return ::openat(folder, name, kOpenToRead | quietly); }));
  if (file || quietly == 0 || errno != EPERM) return file;
  context.quietReading.refused();
  return FileDescriptor(retried([&] { return ::openat(folder, name, kOpenToRead); }));
}

OpenOriginal openOriginal(CopyContext& context, int folder, const char* name) {
  OpenOriginal original;
  original.file = openToCopy(context, folder, name);
  if (!original.file) {
    original.cause = Cause::ofSystem(Operation::Open, Cause::Side::Original);
    return original;
  }
  if (::fstat(original.file.get(), &original.facts) != 0) {
    original.cause = Cause::ofSystem(Operation::Look, Cause::Side::Original);
    original.file.reset();
    return original;
  }
  if (context.isCold()) SystemCalls::fetchAhead(original.file.get(), 0, original.facts.st_size);
  return original;
}

// Why it cannot be copied as a regular file; none when it can.
Cause causeAgainst(const OpenOriginal& original) {
  if (original.cause || S_ISREG(original.facts.st_mode)) return original.cause;
  return Cause::ofOurs(Operation::Open, "it became something else while it was copied",
                       Cause::Side::Original);
}

HardLinks::Identity identityOf(const struct stat& facts) { return {facts.st_dev, facts.st_ino}; }

// The new, empty file; not open when the original was a further name of one that is copied already.
struct Made {
  FileDescriptor file;
  struct stat facts {};
};

// Not looking spares more than the call: a file whose times were seen gets new ones with the next write.
Cause lookAtNew(const CopyPlace& place, mode_t asked, Made& made) {
  const auto known = place.newItems != nullptr ? place.newItems->madeWith(asked) : std::nullopt;
  if (known) {
    made.facts = *known;
    return {};
  }
  if (::fstat(made.file.get(), &made.facts) != 0) return Cause::ofSystem(Operation::Look);
  if (place.newItems != nullptr) place.newItems->saw(asked, made.facts);
  return {};
}

OrCause<Made> makeFile(CopyContext& context, const CopyPlace& place, const struct stat& facts) {
  Made made;
  const mode_t mode = context.giver.modeToStartWith(facts);
  const auto make = [&] {
    made.file = FileDescriptor(
        retried([&] { return ::openat(place.targetFolder, place.targetName, kCreate, mode); }));
    return made.file ? Cause() : Cause::ofSystem(Operation::Make);
  };
  if (facts.st_nlink == 1) {
    if (const Cause cause = make()) return cause;
    if (const Cause cause = lookAtNew(place, mode, made)) return cause;
    return made;
  }
  const auto makeAndLook = [&]() -> OrCause<HardLinks::Identity> {
    if (const Cause cause = make()) return cause;
    if (::fstat(made.file.get(), &made.facts) != 0) return Cause::ofSystem(Operation::Look);
    return identityOf(made.facts);
  };
  const auto answer =
      context.links.makeOrLink(facts, place.targetFolder, place.targetName, place.path, makeAndLook);
  if (!answer) return answer.cause();
  return made;
}

bool cloneContents(CopyContext& context, int source, int target, off_t size) {
  if (size == 0 || !context.clones.isWorthTrying()) return false;
  const bool isCloned = SystemCalls::clone(source, target);
  isCloned ? context.sawClone(target) : context.clones.refused();
  return isCloned;
}

Cause copyWithoutHoles(CopyContext& context, CopyScratch& scratch, const FileContents::Original& original,
                       int target, off_t size) {
  constexpr off_t leastToReserve = off_t{1} << 20;
  if (size >= leastToReserve && !SystemCalls::reserve(target, size)) return Cause::ofSystem(Operation::Write);
  if (context.isCold()) return FileContents::copyRange(original, target, 0, size, scratch.buffer());
  return FileContents::copyRangeInSystem(original, target, 0, size, scratch.buffer(), context.copiesInSystem);
}

Cause copyContents(CopyContext& context, CopyScratch& scratch, int source, int target,
                   const struct stat& facts) {
  const std::function<void()> sawMissing = [&] { context.sawMissing(); };
  const FileContents::Original original{.file = source, .asking = context.asking, .sawMissing = sawMissing};
  if (FileContents::mayHaveHoles(facts)) {
    return FileContents::copyWithHoles(original, target, facts.st_size, scratch.buffer());
  }
  return copyWithoutHoles(context, scratch, original, target, facts.st_size);
}

// Takes the descriptor over, because a big file is copied by others, too.
Cause copyOpened(CopyContext& context, CopyScratch& scratch, OpenOriginal original, const CopyPlace& place) {
  const struct stat& facts = original.facts;
  auto answer = makeFile(context, place, facts);
  if (!answer) return answer.cause();
  Made& made = *answer;
  if (!made.file) return {};
  const bool isCloned = cloneContents(context, original.file.get(), made.file.get(), facts.st_size);
  if (!isCloned && BigFile::isBig(facts) && !FileContents::mayHaveHoles(facts)) {
    return BigFile::copy(context, scratch, std::move(original.file), std::move(made.file), facts, made.facts,
                         place);
  }
  const int source = original.file.get();
  const int target = made.file.get();
  if (!isCloned) {
    if (const Cause cause = copyContents(context, scratch, source, target, facts)) return cause;
  }
  context.noteCopied(facts.st_size);
  const Cause cause = context.giver.finishFile(source, target, facts, made.facts, place.mayInherit);
  if (cause || made.file.closeAfterWriting()) return cause;
  return Cause::ofSystem(Operation::Write);
}

CopyPlace placeIn(const OpenFolder& folder, const char* name) {
  return {.sourceFolder = folder.source(),
          .name = name,
          .targetFolder = folder.target(),
          .targetName = name,
          .path = folder.path(),
          .newItems = &folder.newItems()};
}

// A big file met late would leave one thread alone with it at the end. What waits for a disk anyway is taken
// as it comes, and so is what takes no time.
bool isLeftForLater(CopyContext& context, const std::shared_ptr<OpenFolder>& folder, const char* name,
                    const struct stat& facts) {
  constexpr off_t leastForLater = off_t{1} << 20;
  const bool isLong = facts.st_size >= leastForLater && !FileContents::mayHaveHoles(facts);
  if (!isLong || context.isCold() || context.clones.hasWorked()) return false;
  return context.queue.addForLater(facts.st_size,
                                   [&context, folder, kept = std::string(name)](CopyScratch& scratch) {
                                     copyFile(context, scratch, placeIn(*folder, kept.c_str()));
                                   });
}

}  // namespace

void copyFile(CopyContext& context, CopyScratch& scratch, const CopyPlace& place) {
  OpenOriginal original;
  {
    const RightsOf rights(context.rules.readAs);
    if (!rights.holds()) return context.fail(causeOfMissingRights(), place);
    original = openOriginal(context, place.sourceFolder, place.name);
  }
  if (const Cause cause = causeAgainst(original)) return context.fail(cause, place);
  if (const Cause cause = copyOpened(context, scratch, std::move(original), place))
    context.fail(cause, place);
}

void copyFiles(CopyContext& context, CopyScratch& scratch, const std::shared_ptr<OpenFolder>& folder,
               std::span<const char* const> names) {
  std::array<OpenOriginal, kHandful> originals;
  while (!names.empty() && !context.hasFailed()) {
    const auto now = names.first(std::min(names.size(), context.hasFewDescriptors() ? 1 : kHandful));
    names = names.subspan(now.size());
    {
      const RightsOf rights(context.rules.readAs);
      if (!rights.holds()) return context.fail(causeOfMissingRights(), placeIn(*folder, now.front()));
      for (std::size_t i = 0; i < now.size(); ++i)
        originals[i] = openOriginal(context, folder->source(), now[i]);
    }
    for (std::size_t i = 0; i < now.size() && !context.hasFailed(); ++i) {
      const CopyPlace place = placeIn(*folder, now[i]);
      if (const Cause cause = causeAgainst(originals[i])) return context.fail(cause, place);
      if (isLeftForLater(context, folder, now[i], originals[i].facts)) {
        originals[i] = {};
        continue;
      }
      if (const Cause cause = copyOpened(context, scratch, std::move(originals[i]), place))
        return context.fail(cause, place);
    }
  }
}

}  // namespace halvorn
