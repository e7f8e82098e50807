// Reading and writing the extended attributes of files.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "Platform/files/posix/copy/AttributeCalls.h"

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

  // Calls `take` with the name and value of every attribute for which `wanted` says yes. Fails: false when
  // they could not be read, or when `take` said false. A file system without attributes has none.
  [[nodiscard]] bool each(
      const std::function<bool(std::string_view name)>& wanted,
      const std::function<bool(const std::string& name, std::string_view value)>& take) const;
  // Fails: false, except where the file system or this process' rights have no place for such an attribute.
  [[nodiscard]] bool give(const std::string& name, std::string_view value) const;
  // Take away what the folder above has handed down; that there is nothing is fine. The second is for folders.
  [[nodiscard]] bool removeAccessList() const;
  [[nodiscard]] bool removeListToHandDown() const;

 private:
  AttributeCalls::Item item_;
};

}  // namespace halvorn
