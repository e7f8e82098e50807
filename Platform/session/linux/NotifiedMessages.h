// Sentences as notifications of the desktop.
#pragma once

#include <string>

#include "Platform/running/Workers.h"
#include "Platform/running/posix/FileDescriptor.h"
#include "Platform/session/DesktopMessages.h"

namespace halvorn {

class NotifiedMessages : public DesktopMessages {
 public:
  // To be made before the standard error stream leads elsewhere: who started the program reads it there. The workers
  // ask the bus, which may be slow. "" is no bus.
  NotifiedMessages(Workers& workers, std::string sessionBus, const Text& programName);

  void tell(const Text& title, const Text& sentence) override;

 private:
  // Whether a service took it.
  [[nodiscard]] bool notify(const Text& title, const Text& sentence) const;

  Workers& workers_;
  const std::string sessionBus_;
  const Text programName_;
  const FileDescriptor startersErrors_;
};

}  // namespace halvorn
