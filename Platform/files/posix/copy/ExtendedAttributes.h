// Reading and writing the extended attributes of files.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace halvorn {

class AttributedFile {
 public:
  // An open file or folder.
  explicit AttributedFile(int file) : file_(file) {}
  // Anything in an open folder, a link not followed. To read only: what has the name can change.
  AttributedFile(int folder, const char* name);
  // What is held without being opened. To write only.
  [[nodiscard]] static AttributedFile held(int item);

  // Calls `take` with the name and value of every attribute for which `wanted` says yes. Fails: false when
  // they could not be read, or when `take` said false. A file system without attributes has none.
  [[nodiscard]] bool each(
      const std::function<bool(std::string_view name)>& wanted,
      const std::function<bool(const std::string& name, std::string_view value)>& take) const;
  // Fails: false, except where the file system or this process' rights have no place for such an attribute.
  [[nodiscard]] bool give(const std::string& name, std::string_view value) const;
  // Removing what is not there is fine.
  [[nodiscard]] bool remove(std::string_view name) const;

 private:
  // As the system's calls: the size, or -1.
  [[nodiscard]] ssize_t list(char* buffer, std::size_t room) const;
  [[nodiscard]] ssize_t get(const std::string& name, char* buffer, std::size_t room) const;

  AttributedFile() = default;

  int file_ = -1;
  std::string path_;      // by name
  std::string heldPath_;  // followed to the held item
};

namespace AccessList {
inline constexpr std::string_view ownName = "system.posix_acl_access";
inline constexpr std::string_view defaultName = "system.posix_acl_default";
}  // namespace AccessList

}  // namespace halvorn
