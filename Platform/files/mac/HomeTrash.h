// The Trash in a person's home folder, filled by a program that works for that person and has no workspace to ask.
#pragma once

#include <memory>
#include <vector>

#include "Platform/files/Trash.h"
#include "Platform/files/posix/copy/ItemPlace.h"
#include "Platform/rights/posix/Person.h"
#include "Platform/running/Clock.h"

namespace halvorn {

class HomeTrash : public Trash {
 public:
  HomeTrash(const Clock& clock, Person owner, LinksInTheWay links,
            std::shared_ptr<FolderPins> pins = nullptr);

  // What is moved gets a name that is free in the Trash and belongs to the person from then on. Fails: also for an
  // item on another file system than the Trash.
  std::optional<FileFailure> recycle(const Text& sourceFolder, const std::vector<Text>& names) override;
  // Held to name it: the Trash, where there is one.
  [[nodiscard]] std::vector<FileDescriptor> reach(int folder) const;

 private:
  [[nodiscard]] FileDescriptor openTrash() const;
  [[nodiscard]] std::optional<FileFailure> recycleItem(const ItemPlace& item) const;

  const Clock& clock_;
  const Person owner_;
  const LinksInTheWay links_;
  const std::shared_ptr<FolderPins> pins_;
};

}  // namespace halvorn
