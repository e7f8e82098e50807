// The Trash by the freedesktop rules.
//
// An item goes to the home Trash when that is on the item's file system, else to
// $top/.Trash/$uid, where $top/.Trash is a real folder with the sticky bit, else to
// $top/.Trash-$uid. Where none of these can be, the item stays.
//
// With administrator rights the Trash is that of the person who asked: it is found, made and written with
// that person's rights, only the move itself is made with this process', and what was moved then belongs to
// that person, so that it can be restored and emptied.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Platform/files/Trash.h"
#include "Platform/files/linux/trash/TrashFolder.h"
#include "Platform/files/posix/copy/ItemPlace.h"
#include "Platform/rights/posix/Person.h"
#include "Platform/running/Clock.h"

namespace halvorn {

class XdgTrash : public Trash {
 public:
  XdgTrash(const Clock& clock, Person owner, LinksInTheWay links, std::shared_ptr<FolderPins> pins = nullptr);

  std::optional<FileFailure> recycle(const Text& sourceFolder, const std::vector<Text>& names) override;

  // Folders, held to name them, at and below which recycle() makes and moves things that come from that
  // folder: a Trash that is there, the nearest folder in which one will be made, or, where that is the folder
  // where the mount begins, that one.
  [[nodiscard]] std::vector<FileDescriptor> reach(int folder) const;

 private:
  // Why one of the places did not take the item.
  struct Refusal {
    FileFailure failure = {};
    bool isOfATrash = false;  // there is one, or its place, and it should have
  };
  using Place = OrCause<TrashFolder::Place, Refusal>;

  [[nodiscard]] std::optional<FileFailure> recycleItem(const ItemPlace& item) const;
  [[nodiscard]] std::optional<Refusal> moveAndHandOver(const Place& place, const ItemPlace& item,
                                                       const std::string& path) const;
  [[nodiscard]] FileDescriptor reachAtHome(int folder) const;  // none: it cannot be used
  [[nodiscard]] Place homeTrash(const ItemPlace& item) const;
  [[nodiscard]] Place sharedTrash(int top, const std::string& topPath) const;
  [[nodiscard]] Place ownTrash(int top, const std::string& topPath) const;

  const Clock& clock_;
  Person owner_;
  LinksInTheWay links_;
  std::shared_ptr<FolderPins> pins_;
};

}  // namespace halvorn
