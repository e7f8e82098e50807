// What a process runs, as far as it makes it an application.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

#include "Core/FourCharCode.h"
#include "Core/PropertyValue.h"
#include "Core/Text.h"

namespace halvorn {

class Bundles;
class ProcFiles;

struct Program {
  Text name;
  FourCharCode signature = 0;
  OptionalText path;  // of the bundle around it, else of its file; nullopt when the system does not tell
  bool isInBundle = false;
  PropertyDictionary information;  // the bundle's; empty without a bundle
};

// The first line of a script that names its interpreter: "#!/usr/bin/env python3 -u".
struct Interpreter {
  std::string program;                 // a path, or after env a bare name
  std::vector<std::string> arguments;  // that stand before the script
  bool isSearched = false;             // env looks for it in the PATH
};
[[nodiscard]] std::optional<Interpreter> parseInterpreter(std::string_view scriptStart);

class ProgramFinder {
 public:
  ProgramFinder(const ProcFiles& files, const Bundles& bundles);

  // Of a process whose program lies in a bundle, or is the script of one; nullopt for all others. Nothing
  // that the process merely says of itself makes it part of a bundle.
  [[nodiscard]] std::optional<Program> programInBundle(pid_t pid) const;
  // Of any process.
  [[nodiscard]] Program anyProgram(pid_t pid) const;

 private:
  [[nodiscard]] OptionalText bundleOfExecutable(pid_t pid, const std::string& link) const;
  [[nodiscard]] OptionalText bundleOfScript(pid_t pid, const std::string& link) const;
  [[nodiscard]] bool runsScript(pid_t pid, const std::string& link, const std::vector<std::string>& arguments,
                                std::size_t scriptPosition, const Text& scriptPath) const;

  const ProcFiles& files_;
  const Bundles& bundles_;
};

}  // namespace halvorn
