#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <optional>
#include <string>

#include "Platform/files/posix/copy/FileCopy.h"
#include "Platform/files/posix/copy/NewFolder.h"
#include "Platform/files/posix/copy/SystemCalls.h"

namespace halvorn {
namespace {

// How an item was asked for.
struct Request {
  mode_t kind = 0;
  mode_t mode = 0;
  dev_t device = 0;
  std::string text = {};  // of a link
};

// What was made, held so that it is this that is finished, whatever takes its name.
struct Made {
  FileDescriptor item;
  struct stat facts {};
};

using Operation = Cause::Operation;

OrCause<std::string> readLink(const CopyContext& context, const CopyPlace& place, const struct stat& facts) {
  constexpr auto original = Cause::Side::Original;
  const RightsOf rights(context.rules.readAs);
  if (!rights.holds()) return causeOfMissingRights();
  std::string target(static_cast<std::size_t>(std::max<off_t>(facts.st_size, 4095)) + 1, '\0');
  const ssize_t size = ::readlinkat(place.sourceFolder, place.name, target.data(), target.size());
  if (size < 0) return Cause::ofSystem(Operation::Read, original);
  if (size == 0 || static_cast<std::size_t>(size) == target.size())
    return Cause::ofOurs(Operation::Read, "it changed while it was copied", original);
  target.resize(static_cast<std::size_t>(size));
  return target;
}

Cause make(const CopyPlace& place, const Request& request) {
  const bool isMade = S_ISLNK(request.kind)
                          ? ::symlinkat(request.text.c_str(), place.targetFolder, place.targetName) == 0
                          : SystemCalls::makeNode(place.targetFolder, place.targetName,
                                                  request.kind | request.mode, request.device);
  return isMade ? Cause() : Cause::ofSystem(Operation::Make);
}

OrCause<Request> requestFor(const CopyContext& context, const CopyPlace& place, const struct stat& facts) {
  Request request{.kind = static_cast<mode_t>(facts.st_mode & S_IFMT)};
  if (S_ISLNK(request.kind)) {
    auto text = readLink(context, place, facts);
    if (!text) return text.cause();
    request.text = std::move(*text);
    return request;
  }
  const bool isDevice = S_ISBLK(request.kind) || S_ISCHR(request.kind);
  // A device node made with the administrator's rights would open the device to whoever may open the node.
  if (isDevice && context.rules.ownership == Ownership::ThisProcess)
    return Cause::ofOurs(Operation::Make, "device nodes are not made with administrator rights",
                         Cause::Side::Original);
  request.mode = context.giver.modeToStartWith(facts) & 0777;
  request.device = isDevice ? facts.st_rdev : 0;
  return request;
}

// Where others may write, they may have put something else there between the making and the holding.
bool isAsAsked(const CopyContext& context, const Made& made, const Request& request) {
  errno = 0;  // a call that fails in here says why
  const struct stat& facts = made.facts;
  if ((facts.st_mode & S_IFMT) != request.kind) return false;
  if (S_ISLNK(request.kind)) {
    if (SystemCalls::textOfLink(made.item.get(), request.text.size() + 1) != request.text) return false;
  } else if (request.device != 0 && facts.st_rdev != request.device) {
    return false;
  }
  // Some file systems have owners and modes of their own; nobody is given this process' rights there.
  if (context.rules.ownership == Ownership::Kept) return true;
  const bool hasModeAsked = S_ISLNK(request.kind) || (facts.st_mode & 07777 & ~request.mode) == 0;
  return hasModeAsked && facts.st_uid == ::geteuid() && facts.st_nlink == 1 &&
         !SystemCalls::wasChangedSinceItsBirth(made.item.get());
}

OrCause<Made> makeAndHold(const CopyContext& context, const CopyPlace& place, const Request& request) {
  if (const Cause cause = make(place, request)) return cause;
  Made made{.item = SystemCalls::holdItem(place.targetFolder, place.targetName)};
  if (!made.item || ::fstat(made.item.get(), &made.facts) != 0) return Cause::ofSystem(Operation::Look);
  if (!isAsAsked(context, made, request)) return causeOfExchange();
  return made;
}

// Links are many. In a folder of our own all are made alike, and most get nothing but their times.
bool isPlainLink(const CopyContext& context, const CopyPlace& place, const struct stat& facts) {
  if (!S_ISLNK(facts.st_mode) || facts.st_nlink > 1 || place.newItems == nullptr) return false;
  const auto known = place.newItems->madeByAnybody();
  return known && context.giver.needsTimesAlone(place.sourceFolder, place.name, facts, *known);
}

// Without an item when the original was a further name of one that is copied already.
OrCause<Made> makeOrLink(CopyContext& context, const CopyPlace& place, const struct stat& facts,
                         const Request& request) {
  Made made;
  const auto make = [&]() -> OrCause<HardLinks::Identity> {
    auto answer = makeAndHold(context, place, request);
    if (!answer) return answer.cause();
    made = std::move(*answer);
    return HardLinks::Identity(made.facts.st_dev, made.facts.st_ino);
  };
  const auto answer = context.links.makeOrLink(facts, place.targetFolder, place.targetName, place.path, make);
  if (!answer) return answer.cause();
  return made;
}

}  // namespace

void copyUnopened(CopyContext& context, const CopyPlace& place, const struct stat& facts) {
  const auto request = requestFor(context, place, facts);
  if (!request) return context.fail(request.cause(), place);
  if (isPlainLink(context, place, facts)) {
    Cause cause = make(place, *request);
    if (!cause) cause = MetadataGiver::giveTimes(place.targetFolder, place.targetName, facts);
    if (cause) context.fail(cause, place);
    return;
  }
  const auto made = facts.st_nlink > 1 ? makeOrLink(context, place, facts, *request)
                                       : makeAndHold(context, place, *request);
  if (!made) return context.fail(made.cause(), place);
  if (!made->item) return;
  if (S_ISLNK(facts.st_mode) && place.newItems != nullptr) place.newItems->sawOwners(made->facts);
  const Cause cause = context.giver.finishUnopened(place.sourceFolder, place.name, made->item.get(), facts,
                                                   made->facts, place.mayInherit);
  if (cause) context.fail(cause, place);
}

}  // namespace halvorn
