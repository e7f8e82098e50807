// Reading and writing the extended attributes of files.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "Platform/files/posix/copy/AttributeCalls.h"
#include "Platform/files/posix/copy/Cause.h"

namespace halvorn {

class AttributedFile {
 public:
  // An open file or folder.
  explicit AttributedFile(int file) : item_{.descriptor = file} {}
  // Anything in an open folder, a link not followed. To read only: what has the name can change.
  AttributedFile(int folder, const char* name)
      : item_{.reach = AttributeCalls::Reach::Named, .descriptor = folder, .name = name} {}
  // What is held without being opened. To write only.
  [[nodiscard]] static AttributedFile held(int item) {
    AttributedFile file(item);
    file.item_.reach = AttributeCalls::Reach::Held;
    return file;
  }

  // Calls `take` with the name and value of every attribute for which `wanted` says yes. Fails:
  // when they could not be read, which is then said of an original, or when `take` did. A file
  // system without attributes has none.
  Cause each(const std::function<bool(std::string_view name)>& wanted,
             const std::function<Cause(const std::string& name, std::string_view value)>& take) const;
  // No failure where the file system or this process' rights have no place for such an attribute.
  Cause give(const std::string& name, std::string_view value) const;
  // Take away what the folder above has handed down; that there is nothing is fine. The second is for folders.
  Cause removeAccessList() const;
  Cause removeListToHandDown() const;

 private:
  AttributeCalls::Item item_;
};

}  // namespace halvorn
