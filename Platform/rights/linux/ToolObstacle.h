// What would keep the administrator's tool from starting, found out before anybody is asked for a password.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "Core/Text.h"

namespace halvorn {

struct ToolObstacle {
  enum class Kind {
    NoAbsolutePath,
    Disguised,  // its path, which the password dialog shows, holds characters that nobody sees
    Missing,    // or not to be reached
    NotAFile,
    NotExecutable,
    MediumNoexec,   // the file system it lies on is mounted so that nothing on it can be run
    MediumPrivate,  // the file system belongs to the person alone: the administrator cannot read it
  };
  Kind kind = Kind::Missing;
  int error = 0;  // the system's error number, never 0
};

// nullopt when nothing speaks against it.
[[nodiscard]] std::optional<ToolObstacle> obstacleToTool(const std::string& toolPath);

// How much of what the tool is told a password dialog can be trusted to show, in UTF-16 units.
inline constexpr std::size_t kMostShownWords = 1000;

struct WordsObstacle {
  enum class Kind {
    Disguised,  // a word holds characters that nobody sees, or markup
    TooLong,    // together they are longer than a dialog shows
  };
  Kind kind = Kind::Disguised;
  Text word;  // the one that is disguised
};

// What would keep a dialog that shows the tool's words from showing what will be done. nullopt when nothing would.
[[nodiscard]] std::optional<WordsObstacle> obstacleToShowing(const std::vector<Text>& words);

// Whether the text, in the form of /proc/self/mountinfo, shows the device as mounted
// by a person for that person alone.
[[nodiscard]] bool isPrivateMount(const std::string& mounts, unsigned major, unsigned minor);

}  // namespace halvorn
