#include "Platform/files/posix/copy/FileMetadata.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "Platform/files/posix/copy/ExtendedAttributes.h"
#include "Platform/files/posix/copy/SystemCalls.h"
#include "Platform/rights/posix/Accounts.h"

namespace halvorn {
namespace {

constexpr mode_t kAllModeBits = 07777;

// For a call that may have failed a moment ago.
Cause causeUnless(bool isDone) { return isDone ? Cause() : Cause::ofSystem(Cause::Operation::Metadata); }

bool isAccessList(std::string_view name) {
  return AttributeCalls::kindOf(name) == AttributeCalls::Kind::AccessList;
}

}  // namespace

MetadataGiver::MetadataGiver(Ownership ownership)
    : ownership_(ownership), user_(::geteuid()), group_(::getegid()), groups_(groupsOfThisProcess()) {}

bool MetadataGiver::mayGiveUser(uid_t user) const { return user_ == 0 || user == user_; }

bool MetadataGiver::mayGiveGroup(gid_t group) const {
  return user_ == 0 || group == group_ || std::find(groups_.begin(), groups_.end(), group) != groups_.end();
}

mode_t MetadataGiver::modeToStartWith(const struct stat& facts) const {
  if (ownership_ == Ownership::ThisProcess)
    return facts.st_mode & (S_IRWXU | S_IRGRP | S_IXGRP | S_IROTH | S_IXOTH);
  // Whoever may not write a file may not give it attributes either, the administrator apart.
  const mode_t always = user_ == 0 ? 0 : S_IWUSR;
  // While owner or group are still to change, the bits for group and others would speak of the wrong people.
  const bool willChange = (facts.st_uid != user_ && mayGiveUser(facts.st_uid)) ||
                          (facts.st_gid != group_ && mayGiveGroup(facts.st_gid));
  return (facts.st_mode & (willChange ? static_cast<mode_t>(S_IRWXU) : 0777)) | always;
}

mode_t MetadataGiver::modeToGive(const struct stat& facts, const struct stat& made) const {
  mode_t mode = facts.st_mode & kAllModeBits;
  if (ownership_ == Ownership::ThisProcess)
    return mode & ~static_cast<mode_t>(S_ISUID | S_ISGID | S_IWGRP | S_IWOTH);
  // Set-id bits lend the owner's rights; with another owner they would lend somebody else's.
  if (made.st_uid != facts.st_uid) mode &= ~static_cast<mode_t>(S_ISUID);
  if (made.st_gid != facts.st_gid) mode &= ~static_cast<mode_t>(S_ISGID);
  return mode;
}

// `change` is a chown of the item. Not being allowed to give a file away is no failure.
template <typename Change>
Cause MetadataGiver::giveOwner(const struct stat& facts, struct stat& made, const Change& change) const {
  if (ownership_ == Ownership::ThisProcess) {
    // A folder may hand its group down to what is made in it.
    if (made.st_uid == user_ && made.st_gid == group_) return {};
    if (const Cause cause = causeUnless(change(user_, group_) == 0)) return cause;
    made.st_uid = user_;
    made.st_gid = group_;
    return {};
  }
  constexpr auto unchanged = static_cast<uid_t>(-1);
  const uid_t user = made.st_uid != facts.st_uid && mayGiveUser(facts.st_uid) ? facts.st_uid : unchanged;
  const gid_t group = made.st_gid != facts.st_gid && mayGiveGroup(facts.st_gid) ? facts.st_gid : unchanged;
  if (user == unchanged && group == unchanged) return {};
  if (change(user, group) != 0) return causeUnless(errno == EPERM || errno == EINVAL);
  if (user != unchanged) made.st_uid = user;
  if (group != unchanged) made.st_gid = group;
  // The system takes set-id bits away with the owner.
  made.st_mode &= ~static_cast<mode_t>(S_ISUID | S_ISGID);
  return {};
}

bool MetadataGiver::isCarried(std::string_view name) const {
  switch (AttributeCalls::kindOf(name)) {
    case AttributeCalls::Kind::Persons:
      return true;
    case AttributeCalls::Kind::Places:
      return false;
    case AttributeCalls::Kind::AccessList:
    case AttributeCalls::Kind::Systems:
      break;
  }
  return ownership_ == Ownership::Kept;
}

Cause MetadataGiver::giveAttributes(const AttributedFile& source, const AttributedFile& target,
                                    LaterAttributes* later) const {
  const auto wanted = [&](std::string_view name) { return isCarried(name); };
  return source.each(wanted, [&](const std::string& name, std::string_view value) {
    if (later == nullptr || !isAccessList(name)) return target.give(name, value);
    later->emplace_back(name, value);
    return Cause();
  });
}

Cause MetadataGiver::finishFile(int source, int target, const struct stat& facts, struct stat made,
                                MayInherit mayInherit) const {
  const auto change = [&](uid_t user, gid_t group) { return ::fchown(target, user, group); };
  if (const Cause cause = giveOwner(facts, made, change)) return cause;
  const bool inherits = mayInherit == MayInherit::Yes;
  if (inherits) {
    if (const Cause cause = AttributedFile(target).removeAccessList()) return cause;
  }
  // A change of owner takes capabilities away, so they come after it.
  if (const Cause cause = giveAttributes(AttributedFile(source), AttributedFile(target), nullptr))
    return cause;
  const mode_t mode = modeToGive(facts, made);
  const bool needsMode = inherits || (made.st_mode & kAllModeBits) != mode;
  return causeUnless((!needsMode || ::fchmod(target, mode) == 0) &&
                     ::futimens(target, SystemCalls::timesOf(facts).data()) == 0);
}

Cause MetadataGiver::startFolder(int source, int target, const struct stat& facts, struct stat& made,
                                 LaterAttributes& later, MayInherit mayInherit) const {
  const auto change = [&](uid_t user, gid_t group) { return ::fchown(target, user, group); };
  if (const Cause cause = giveOwner(facts, made, change)) return cause;
  if (mayInherit == MayInherit::Yes) {
    if (const Cause cause = AttributedFile(target).removeAccessList()) return cause;
    if (const Cause cause = AttributedFile(target).removeListToHandDown()) return cause;
  }
  // A folder that hands its group down would give it to everything made in here.
  const bool handsGroupDown = (made.st_mode & S_ISGID) != 0;
  if (mayInherit == MayInherit::Yes || handsGroupDown) {
    if (const Cause cause = causeUnless(::fchmod(target, S_IRWXU) == 0)) return cause;
    made.st_mode = (made.st_mode & S_IFMT) | S_IRWXU;
  }
  return giveAttributes(AttributedFile(source), AttributedFile(target), &later);
}

Cause MetadataGiver::finishFolder(int target, const struct stat& facts, const struct stat& made,
                                  const LaterAttributes& later) const {
  for (const auto& [name, value] : later) {
    if (const Cause cause = AttributedFile(target).give(name, value)) return cause;
  }
  const mode_t mode = modeToGive(facts, made);
  const bool needsMode = !later.empty() || (made.st_mode & kAllModeBits) != mode;
  return causeUnless((!needsMode || ::fchmod(target, mode) == 0) &&
                     ::futimens(target, SystemCalls::timesOf(facts).data()) == 0);
}

// Only the administrator can give attributes to links, and nobody has "user." ones on any of these.
bool MetadataGiver::givesAttributesUnopened(const struct stat& facts) const {
  return ownership_ == Ownership::Kept && (user_ == 0 || !S_ISLNK(facts.st_mode));
}

Cause MetadataGiver::finishUnopened(int sourceFolder, const char* name, int target, const struct stat& facts,
                                    struct stat made, MayInherit mayInherit) const {
  const auto change = [&](uid_t user, gid_t group) {
    return SystemCalls::changeOwner(target, user, group) ? 0 : -1;
  };
  if (const Cause cause = giveOwner(facts, made, change)) return cause;
  const bool hasMode = !S_ISLNK(facts.st_mode);
  const bool inherits = hasMode && mayInherit == MayInherit::Yes;
  if (inherits) {
    if (const Cause cause = AttributedFile::held(target).removeAccessList()) return cause;
  }
  if (givesAttributesUnopened(facts)) {
    const AttributedFile source(sourceFolder, name);
    if (const Cause cause = giveAttributes(source, AttributedFile::held(target), nullptr)) return cause;
  }
  const mode_t mode = modeToGive(facts, made);
  const bool needsMode = hasMode && (inherits || (made.st_mode & kAllModeBits) != mode);
  return causeUnless((!needsMode || SystemCalls::changeMode(target, mode)) &&
                     SystemCalls::changeTimes(target, SystemCalls::timesOf(facts).data()));
}

bool MetadataGiver::needsTimesAlone(int sourceFolder, const char* name, const struct stat& facts,
                                    struct stat made) const {
  bool needsOwner = false;
  const auto note = [&](uid_t, gid_t) {
    needsOwner = true;
    return 0;
  };
  if (giveOwner(facts, made, note) || needsOwner) return false;
  if (!givesAttributesUnopened(facts)) return true;
  const auto wanted = [&](std::string_view attribute) { return isCarried(attribute); };
  const auto refuse = [](const std::string&, std::string_view) {
    return Cause::ofOurs(Cause::Operation::Metadata, "there is one to give");
  };
  return !AttributedFile(sourceFolder, name).each(wanted, refuse);
}

Cause MetadataGiver::giveTimes(int folder, const char* name, const struct stat& facts) {
  return causeUnless(::utimensat(folder, name, SystemCalls::timesOf(facts).data(), AT_SYMLINK_NOFOLLOW) == 0);
}

}  // namespace halvorn
