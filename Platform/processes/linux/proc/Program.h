// What a process runs, as far as it makes it an application.
#pragma once

#include <sys/types.h>

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "Core/FourCharCode.h"
#include "Core/PropertyValue.h"
#include "Core/Text.h"
#include "Platform/processes/linux/proc/ProcFiles.h"

namespace halvorn {

class Bundles;

struct Program {
  Text name;
  FourCharCode signature = 0;
  OptionalText path;  // of the bundle around it, else of its file; nullopt when the system does not tell
  bool isInBundle = false;
  // The bundle's; null without one. Shared by the programs that one walk finds in one bundle.
  std::shared_ptr<const PropertyDictionary> information;
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
  // What one walk over the process table has read of the files it came across, so that the program of a
  // hundred processes is read once. Good for that walk only: bundles are replaced under running programs.
  class Walk {
    friend class ProgramFinder;
    struct Known {
      std::optional<FileIdentity> file;  // at that path
      std::optional<Program> program;    // what it is when it runs; nullopt when it lies in no bundle
    };
    std::unordered_map<std::string, Known> paths_;
  };

  ProgramFinder(const ProcFiles& files, const Bundles& bundles);

  // A quick look: false when programInBundle() would find nothing.
  [[nodiscard]] bool mayBeInBundle(pid_t pid) const;
  // Of a process whose program lies in a bundle, or is the script of one; nullopt for all others. Nothing
  // that the process merely says of itself makes it part of a bundle.
  [[nodiscard]] std::optional<Program> programInBundle(pid_t pid, Walk& walk) const;
  // Of any process.
  [[nodiscard]] Program anyProgram(pid_t pid, Walk& walk) const;

 private:
  [[nodiscard]] std::optional<Program> programAround(const Text& path) const;
  [[nodiscard]] std::optional<Program> programOfExecutable(pid_t pid, const std::string& link,
                                                           Walk& walk) const;
  [[nodiscard]] std::optional<Program> programOfScript(pid_t pid, const std::string& link) const;
  [[nodiscard]] bool runsScript(pid_t pid, const std::string& link, const std::vector<std::string>& arguments,
                                std::size_t scriptPosition, const Text& scriptPath) const;

  const ProcFiles& files_;
  const Bundles& bundles_;
};

}  // namespace halvorn
