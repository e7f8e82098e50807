#include "Platform/running/linux/ThisProgram.h"

#include <dlfcn.h>
#include <unistd.h>

#include <climits>
#include <string>

namespace halvorn {

Text pathOfThisProgram() {
  char path[PATH_MAX];
  const ssize_t length = ::readlink("/proc/self/exe", path, sizeof path);
  return length > 0 ? Text(std::string(path, static_cast<std::size_t>(length))) : Text("/");
}

Text pathOfCodeAt(const void* address) {
  Dl_info found{};
  return ::dladdr(address, &found) != 0 && found.dli_fname != nullptr ? Text(found.dli_fname) : Text();
}

}  // namespace halvorn
