// Adapters with libraries of their own that most starts of the program never use: each is a module beside the
// program, loaded when it is first asked for something. A machine that lacks a module's libraries lacks what
// the module does, nothing else.
#pragma once

#include "Core/Text.h"

namespace halvorn {

// Loads a module and finds the function that makes its adapter. Modules stay loaded for as long as the
// program runs: objects of theirs may outlive every caller.
//
// Thread: any. Fails: a null function and the reason.
class LoadedModule {
 public:
  explicit LoadedModule(const Text& path);

  template <typename Function>
  [[nodiscard]] Function* function(const char* name) const {
    return reinterpret_cast<Function*>(address(name));
  }
  [[nodiscard]] const Text& problem() const { return problem_; }

 private:
  [[nodiscard]] void* address(const char* name) const;

  void* handle_ = nullptr;
  Text problem_;
};

}  // namespace halvorn
