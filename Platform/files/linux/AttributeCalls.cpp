#include "Platform/files/posix/copy/AttributeCalls.h"

#include <sys/xattr.h>

#include <cerrno>

#include "Platform/files/linux/HeldItemPath.h"

namespace halvorn::AttributeCalls {
namespace {

constexpr char kOwnList[] = "system.posix_acl_access";
constexpr char kListToHandDown[] = "system.posix_acl_default";

// The system has these calls for open files and for paths, but not for a name in an open folder.
std::string namedPath(const Item& item) { return heldItemPath(item.descriptor) + "/" + item.name; }

// Followed to the held item.
int remove(const Item& item, const char* name) {
  return item.reach == Reach::Open ? ::fremovexattr(item.descriptor, name)
                                   : ::removexattr(heldItemPath(item.descriptor).c_str(), name);
}

}  // namespace

ssize_t list(const Item& item, char* buffer, std::size_t room) {
  return item.reach == Reach::Open ? ::flistxattr(item.descriptor, buffer, room)
                                   : ::llistxattr(namedPath(item).c_str(), buffer, room);
}

ssize_t get(const Item& item, const std::string& name, char* buffer, std::size_t room) {
  return item.reach == Reach::Open ? ::fgetxattr(item.descriptor, name.c_str(), buffer, room)
                                   : ::lgetxattr(namedPath(item).c_str(), name.c_str(), buffer, room);
}

int set(const Item& item, const std::string& name, std::string_view value) {
  if (item.reach == Reach::Open)
    return ::fsetxattr(item.descriptor, name.c_str(), value.data(), value.size(), 0);
  return ::setxattr(heldItemPath(item.descriptor).c_str(), name.c_str(), value.data(), value.size(), 0);
}

int removeAccessList(const Item& item) { return remove(item, kOwnList); }
int removeListToHandDown(const Item& item) { return remove(item, kListToHandDown); }

bool isMissing(int error) { return error == ENODATA; }

Kind kindOf(std::string_view name) {
  if (name == kOwnList || name == kListToHandDown) return Kind::AccessList;
  if (name.starts_with("user.")) return Kind::Persons;
  // A label says what may be done at a place. The others are the form in which one file system keeps the
  // access lists, shown to the administrator beside the lists themselves.
  if (name == "security.selinux" || name.starts_with("trusted.SGI_ACL_")) return Kind::Places;
  return Kind::Systems;
}

}  // namespace halvorn::AttributeCalls
