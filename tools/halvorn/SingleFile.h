// A medium as one file to double-click: a starter, and behind it what the medium holds.
#pragma once

#include <string>

namespace halvorn {

struct SingleFile {
  std::string starter;  // program
  std::string folder;   // what the medium holds, with the modes and times it is to have
  std::string scratch;  // folder for what is needed meanwhile
  std::string output;
};

// Writes the file, the same from the same folder whoever does it. Fails: a sentence, else "".
[[nodiscard]] std::string madeSingleFile(const SingleFile& file);

}  // namespace halvorn
