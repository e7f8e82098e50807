// Application bundles with a zoo program in them.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace halvorn {

// The zoo program itself; see zoo/zoo_main.cpp for its habits.
[[nodiscard]] std::string zooProgram();

struct ZooBundle {
  std::string name = "Zoo";  // "Zoo.app", its program "Zoo"
  std::map<std::string, std::string> info =
      {};                      // keys of the information dictionary, beside CFBundleExecutable
  std::string extraInfo = {};  // more of the dictionary, as XML
  bool isFlat = false;         // "Zoo.app/Zoo" with "Resources/Info-gnustep.plist"
  std::string script = {};     // in place of the program
};
// Makes it in the folder and returns the path of its program.
std::string makeBundle(const std::filesystem::path& folder, const ZooBundle& bundle);
// The bundle around that program.
[[nodiscard]] std::string bundleOf(const std::string& program);

// Puts the zoo program at that path: a link where the file system allows one, else a copy.
void placeZooProgram(const std::filesystem::path& path);

}  // namespace halvorn
