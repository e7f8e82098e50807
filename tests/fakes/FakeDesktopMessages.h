// Keeps what was told: "Foo: Installation failed."
#pragma once

#include <string>
#include <vector>

#include "Platform/session/DesktopMessages.h"

namespace halvorn {

class FakeDesktopMessages : public DesktopMessages {
 public:
  void tell(const Text& title, const Text& sentence) override {
    told.push_back(title.bytes() + ": " + sentence.bytes());
  }
  std::vector<std::string> told;
};

}  // namespace halvorn
