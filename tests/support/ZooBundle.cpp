#include "tests/support/ZooBundle.h"

#include <fstream>

namespace halvorn {
namespace {

namespace fs = std::filesystem;

std::string xml(const ZooBundle& bundle) {
  std::string result =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>"
      "<key>CFBundleExecutable</key><string>" +
      bundle.name + "</string>";
  for (const auto& [key, value] : bundle.info) {
    result += "<key>" + key + "</key><string>" + value + "</string>";
  }
  return result + bundle.extraInfo + "</dict></plist>\n";
}

}  // namespace

std::string zooProgram() { return KT_ZOO_PROGRAM; }

void placeZooProgram(const fs::path& path) {
  if (fs::exists(path)) return;
  fs::create_directories(path.parent_path());
  std::error_code failed;
  fs::create_hard_link(zooProgram(), path, failed);
  if (failed) fs::copy_file(zooProgram(), path);
}

std::string makeBundle(const fs::path& folder, const ZooBundle& bundle) {
  const fs::path root = folder / (bundle.name + ".app");
  const fs::path program = bundle.isFlat ? root / bundle.name : root / "Contents/Linux" / bundle.name;
  const fs::path info = bundle.isFlat ? root / "Resources/Info-gnustep.plist" : root / "Contents/Info.plist";
  fs::create_directories(program.parent_path());
  fs::create_directories(info.parent_path());
  std::ofstream(info) << xml(bundle);
  if (bundle.script.empty()) {
    placeZooProgram(program);
  } else {
    std::ofstream(program) << bundle.script;
    fs::permissions(program, fs::perms(0755));
  }
  return program.string();
}

std::string bundleOf(const std::string& program) { return program.substr(0, program.rfind(".app/") + 4); }

}  // namespace halvorn
