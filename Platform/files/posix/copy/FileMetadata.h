// What belongs to a file besides its bytes: owner, mode, access lists, extended attributes, times.
#pragma once

#include <sys/stat.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Platform/files/posix/copy/Cause.h"
#include "Platform/files/posix/copy/ExtendedAttributes.h"

namespace halvorn {

// Whom the copies belong to and what they may do.
enum class Ownership {
  // Owner and group of the original as far as this process may give them, everything else as it is.
  Kept,
  // This process. What would lend its rights to others stays behind: set-id bits, capabilities, access lists,
  // and write permission for group and others.
  ThisProcess,
};

// Whether the new item stands in a folder that hands access lists down.
enum class MayInherit { No, Yes };

// Attributes of a folder that would get in the way while it is filled.
using LaterAttributes = std::vector<std::pair<std::string, std::string>>;

// Gives new items what their originals have. In all functions `facts` are the original's and `made` what the
// new item was made with.
//
// Fails: when anything could not be given that the target's file system can hold and
// this process may give. Thread: any.
class MetadataGiver {
 public:
  explicit MetadataGiver(Ownership ownership);

  // The mode to make the copy with: for group and others no more than it will have in the end.
  [[nodiscard]] mode_t modeToStartWith(const struct stat& facts) const;

  // For a file that has its bytes; both are open.
  Cause finishFile(int source, int target, const struct stat& facts, struct stat made,
                   MayInherit mayInherit) const;
  // For a folder: at its start all that does not get in the way, at its end the rest. `made` is updated.
  Cause startFolder(int source, int target, const struct stat& facts, struct stat& made,
                    LaterAttributes& later, MayInherit mayInherit) const;
  Cause finishFolder(int target, const struct stat& facts, const struct stat& made,
                     const LaterAttributes& later) const;
  // For a link, pipe, socket or device, which are not opened: the source is `name` in
  // its folder, the target is held.
  Cause finishUnopened(int sourceFolder, const char* name, int target, const struct stat& facts,
                       struct stat made, MayInherit mayInherit) const;
  // Whether there is nothing but its times to give to a link.
  [[nodiscard]] bool needsTimesAlone(int sourceFolder, const char* name, const struct stat& facts,
                                     struct stat made) const;
  // The mode that the copy has in the end.
  [[nodiscard]] mode_t modeToGive(const struct stat& facts, const struct stat& made) const;
  // Whether the copy gets the attribute of that name.
  [[nodiscard]] bool isCarried(std::string_view name) const;
  // Gives them by name: where others may write, a link of theirs may get them instead.
  static Cause giveTimes(int folder, const char* name, const struct stat& facts);

 private:
  [[nodiscard]] bool mayGiveUser(uid_t user) const;
  [[nodiscard]] bool mayGiveGroup(gid_t group) const;
  template <typename Change>
  Cause giveOwner(const struct stat& facts, struct stat& made, const Change& change) const;
  [[nodiscard]] bool givesAttributesUnopened(const struct stat& facts) const;
  Cause giveAttributes(const AttributedFile& source, const AttributedFile& target,
                       LaterAttributes* later) const;

  Ownership ownership_;
  uid_t user_;
  gid_t group_;
  std::vector<gid_t> groups_;
};

}  // namespace halvorn
