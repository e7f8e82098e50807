#include "tools/halvorn/SingleFile.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "packaging/linux/starter/PayloadTrailer.h"
#include "tools/halvorn/Program.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

// Each item of the folder by its name, so that the folder it is unpacked to keeps its own mode.
std::vector<std::string> archiveWords(const std::string& folder, const std::string& archive) {
  std::vector<std::string> words = {
      "tar", "--sort=name", "--format=gnu", "--owner=0", "--group=0", "--numeric-owner",
      "-C",  folder,        "-c",           "-f",        archive,     "--"};
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder)) names.push_back(entry.path().filename().string());
  std::sort(names.begin(), names.end());
  words.insert(words.end(), names.begin(), names.end());
  return words;
}

}  // namespace

std::string madeSingleFile(const SingleFile& file) {
  const std::string archive = file.scratch + "/archive";
  const std::string packed = file.scratch + "/packed";
  const ProgramEnd archived = runProgram(archiveWords(file.folder, archive), {"LC_ALL=C"});
  if (archived.status != 0) return "tar: " + archived.output;
  // How many threads there are cannot be seen in the bytes.
  const ProgramEnd compressed =
      runProgram({"zstd", "-19", "-T0", "--quiet", "--force", archive, "-o", packed});
  if (compressed.status != 0) return "zstd: " + compressed.output;
  std::error_code problem;
  fs::remove(file.output, problem);
  std::ofstream output(file.output, std::ios::binary);
  output << std::ifstream(file.starter, std::ios::binary).rdbuf()
         << std::ifstream(packed, std::ios::binary).rdbuf()
         << payloadTrailer({.packed = fs::file_size(packed), .unpacked = fs::file_size(archive)});
  output.close();
  if (!output) return "cannot write " + file.output;
  fs::permissions(file.output, static_cast<fs::perms>(0755), problem);
  return problem ? "cannot write " + file.output : "";
}

}  // namespace halvorn
