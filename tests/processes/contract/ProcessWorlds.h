// What the cases of the contract are asked of: a session with applications that a test starts and ends.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "KTStuff/KTClasses/KTProcess.h"
#include "Platform/processes/ApplicationControl.h"
#include "Platform/processes/ProcessSource.h"

namespace halvorn {

using Strings = std::vector<std::string>;

struct Animal {
  std::string name;
  std::string code = {};  // "" declares none
  bool ignoresRequests = false;
};

class ProcessWorld {
 public:
  virtual ~ProcessWorld() = default;
  // Starts it, with a window, and returns its process id once it is there.
  virtual std::int32_t start(const Animal& animal) = 0;
  virtual void end(std::int32_t pid) = 0;
  virtual bool settles(const std::function<bool()>& condition) = 0;
  virtual KTProcessClass& processes() = 0;
  virtual ProcessSource& source() = 0;
  virtual ApplicationControl& control() = 0;
  virtual Strings logLines() = 0;
  // Whether its desktop hides windows at all.
  [[nodiscard]] virtual bool hidesWindows() const { return true; }
  virtual std::string pathOf(const std::string& name) = 0;
  Strings changes;
};

// What a desktop says of windows; of nobody that he is in front or hidden where it says nothing.
enum class ToldOfWindows { Everything, Nothing };

// One of those that this program was built with.
struct NamedProcessWorld {
  const char* name;
  std::optional<std::string> (*missing)();  // what the machine lacks for it
  std::unique_ptr<ProcessWorld> (*make)();
  ToldOfWindows told = ToldOfWindows::Everything;
};
[[nodiscard]] const std::vector<NamedProcessWorld>& processWorlds();

}  // namespace halvorn
