// One Trash of the freedesktop rules: a folder with `files`, what was thrown away,
// and `info`, where it came from.
#pragma once

#include <optional>
#include <string>

#include "Core/Date.h"
#include "Platform/files/FileFailure.h"
#include "Platform/files/posix/copy/Cause.h"
#include "Platform/files/posix/copy/ItemPlace.h"
#include "Platform/rights/posix/Person.h"
#include "Platform/running/posix/FileDescriptor.h"

namespace halvorn {

class TrashFolder {
 public:
  enum class Outcome {
    Moved,
    Elsewhere,  // this Trash lies on another file system than the item
    Failed,
  };
  struct Moved {
    Outcome outcome = Outcome::Failed;
    std::string name = {};     // where it lies now, in files()
    FileFailure failure = {};  // why it was not moved
  };
  // A folder that may serve as a Trash, and its path, to tell what went wrong there.
  struct Place {
    FileDescriptor folder;
    std::string path;
  };

  // Opens `files` and `info` in the folder, making them where they are missing. The work is done with the
  // person's rights, and the folders must belong to that person. Fails: when this cannot serve as a Trash.
  static OrCause<TrashFolder, FileFailure> open(const Place& place, const Person& owner);

  // Moves the item; `path` is what its information says it came from, absolute or relative to the folder the
  // Trash serves. The information is written first and never over another's. Nothing in the Trash is
  // overwritten. When it fails the item is where it was, and its information is gone.
  [[nodiscard]] Moved move(const ItemPlace& item, const std::string& path, Date when) const;

  [[nodiscard]] int files() const { return files_.get(); }

 private:
  TrashFolder(FileDescriptor files, FileDescriptor info, std::string path, const Person& owner);

  FileDescriptor files_;
  FileDescriptor info_;
  std::string path_;
  const Person* owner_;
};

namespace TrashInformation {
// The bytes of a path as the information file wants them: all but unreserved characters and slashes as %E4.
[[nodiscard]] std::string percentEncoded(const std::string& path);
// Local time, "2026-11-21T14:05:09".
[[nodiscard]] std::string deletionDate(Date when);
// The file's whole contents.
[[nodiscard]] std::string text(const std::string& path, Date when);
// The name for an item in the Trash at the given attempt, counted from 1: the item's own, then "Nas 2.app"
// and so on; shortened so that the information file's name fits, too.
[[nodiscard]] std::string nameForAttempt(const std::string& name, int attempt);
}  // namespace TrashInformation

}  // namespace halvorn
