#include "Platform/running/linux/LoadedModule.h"

#include <dlfcn.h>

namespace halvorn {

LoadedModule::LoadedModule(const Text& path) {
  // A name without a slash would be looked for in the system's folders.
  if (!path.hasPrefix("/")) {
    problem_ = "not a whole path";
    return;
  }
  handle_ = ::dlopen(path.bytes().c_str(), RTLD_NOW | RTLD_LOCAL);
  const char* reason = handle_ == nullptr ? ::dlerror() : nullptr;
  if (reason != nullptr) problem_ = reason;
}

void* LoadedModule::address(const char* name) const {
  return handle_ == nullptr ? nullptr : ::dlsym(handle_, name);
}

}  // namespace halvorn
