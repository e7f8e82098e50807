#include "Platform/files/posix/copy/AttributeCalls.h"

#include <sys/acl.h>
#include <sys/xattr.h>

#include <cerrno>
#include <memory>

#include "Platform/files/posix/copy/SystemCalls.h"

namespace halvorn::AttributeCalls {
namespace {

// The system has these calls for open files and for paths, but not for a name in an open folder.
std::string namedPath(const Item& item) {
  return SystemCalls::pathOf(item.descriptor).value_or("") + "/" + item.name;
}

}  // namespace

ssize_t list(const Item& item, char* buffer, std::size_t room) {
  return item.reach == Reach::Open ? ::flistxattr(item.descriptor, buffer, room, 0)
                                   : ::listxattr(namedPath(item).c_str(), buffer, room, XATTR_NOFOLLOW);
}

ssize_t get(const Item& item, const std::string& name, char* buffer, std::size_t room) {
  return item.reach == Reach::Open
             ? ::fgetxattr(item.descriptor, name.c_str(), buffer, room, 0, 0)
             : ::getxattr(namedPath(item).c_str(), name.c_str(), buffer, room, 0, XATTR_NOFOLLOW);
}

// What is held is open here.
int set(const Item& item, const std::string& name, std::string_view value) {
  return ::fsetxattr(item.descriptor, name.c_str(), value.data(), value.size(), 0, 0);
}

// One list says both: who may do what, and what is handed down.
int removeAccessList(const Item& item) {
  const std::unique_ptr<std::remove_pointer_t<acl_t>, int (*)(void*)> none(::acl_init(0), ::acl_free);
  return none != nullptr ? ::acl_set_fd_np(item.descriptor, none.get(), ACL_TYPE_EXTENDED) : -1;
}
int removeListToHandDown(const Item& item) { return removeAccessList(item); }

bool isMissing(int error) { return error == ENOATTR || error == ENOENT; }

Kind kindOf(std::string_view name) {
  return name.starts_with("com.apple.system.") ? Kind::Systems : Kind::Persons;
}

}  // namespace halvorn::AttributeCalls
