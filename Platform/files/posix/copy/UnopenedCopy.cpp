#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <optional>
#include <string>

#include "Platform/files/posix/copy/FileCopy.h"
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

std::optional<std::string> readLink(const CopyContext& context, const CopyPlace& place,
                                    const struct stat& facts) {
  const RightsOf rights(context.rules.readAs);
  if (!rights.holds()) return std::nullopt;
  std::string target(static_cast<std::size_t>(std::max<off_t>(facts.st_size, 4095)) + 1, '\0');
  const ssize_t size = ::readlinkat(place.sourceFolder, place.name, target.data(), target.size());
  if (size <= 0 || static_cast<std::size_t>(size) == target.size()) return std::nullopt;
  target.resize(static_cast<std::size_t>(size));
  return target;
}

bool make(const CopyPlace& place, const Request& request) {
  if (S_ISLNK(request.kind))
    return ::symlinkat(request.text.c_str(), place.targetFolder, place.targetName) == 0;
  return SystemCalls::makeNode(place.targetFolder, place.targetName, request.kind | request.mode,
                               request.device);
}

std::optional<Request> requestFor(const CopyContext& context, const CopyPlace& place,
                                  const struct stat& facts) {
  Request request{.kind = static_cast<mode_t>(facts.st_mode & S_IFMT)};
  if (S_ISLNK(request.kind)) {
    auto text = readLink(context, place, facts);
    if (!text) return std::nullopt;
    request.text = std::move(*text);
    return request;
  }
  const bool isDevice = S_ISBLK(request.kind) || S_ISCHR(request.kind);
  // A device node made with the administrator's rights would open the device to whoever may open the node.
  if (isDevice && context.rules.ownership == Ownership::ThisProcess) return std::nullopt;
  request.mode = context.giver.modeToStartWith(facts) & 0777;
  request.device = isDevice ? facts.st_rdev : 0;
  return request;
}

// Where others may write, they may have put something else there between the making and the holding.
bool isAsAsked(const CopyContext& context, const Made& made, const Request& request) {
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

std::optional<Made> makeAndHold(const CopyContext& context, const CopyPlace& place, const Request& request) {
  if (!make(place, request)) return std::nullopt;
  Made made{.item = SystemCalls::holdItem(place.targetFolder, place.targetName)};
  if (!made.item || ::fstat(made.item.get(), &made.facts) != 0 || !isAsAsked(context, made, request))
    return std::nullopt;
  return made;
}

// Links are many. In a folder of our own all are made alike, and most get nothing but their times.
bool isPlainLink(const CopyContext& context, const CopyPlace& place, const struct stat& facts) {
  if (!S_ISLNK(facts.st_mode) || facts.st_nlink > 1 || place.newItems == nullptr) return false;
  const auto known = place.newItems->madeByAnybody();
  return known && context.giver.needsTimesAlone(place.sourceFolder, place.name, facts, *known);
}

// nullopt when that failed; without an item when the original was a further name of one that is copied
// already.
std::optional<Made> makeOrLink(CopyContext& context, const CopyPlace& place, const struct stat& facts,
                               const Request& request) {
  std::optional<Made> made;
  const auto make = [&]() -> std::optional<HardLinks::Identity> {
    made = makeAndHold(context, place, request);
    if (!made) return std::nullopt;
    return HardLinks::Identity(made->facts.st_dev, made->facts.st_ino);
  };
  switch (context.links.makeOrLink(facts, place.targetFolder, place.targetName, place.path, make)) {
    case HardLinks::Answer::Made:
      return made;
    case HardLinks::Answer::Linked:
      return Made{};
    case HardLinks::Answer::Failed:
      break;
  }
  return std::nullopt;
}

}  // namespace

void copyUnopened(CopyContext& context, const CopyPlace& place, const struct stat& facts) {
  const auto request = requestFor(context, place, facts);
  if (!request) return context.fail();
  if (isPlainLink(context, place, facts)) {
    if (!make(place, *request) || !MetadataGiver::giveTimes(place.targetFolder, place.targetName, facts))
      context.fail();
    return;
  }
  const auto made = facts.st_nlink > 1 ? makeOrLink(context, place, facts, *request)
                                       : makeAndHold(context, place, *request);
  if (!made) return context.fail();
  if (!made->item) return;
  if (S_ISLNK(facts.st_mode) && place.newItems != nullptr) place.newItems->sawOwners(made->facts);
  if (!context.giver.finishUnopened(place.sourceFolder, place.name, made->item.get(), facts, made->facts,
                                    place.mayInherit)) {
    context.fail();
  }
}

}  // namespace halvorn
