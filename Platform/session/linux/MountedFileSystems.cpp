#include "Platform/session/linux/MountedFileSystems.h"

#include <fcntl.h>
#include <sys/vfs.h>

#include <fstream>
#include <sstream>

#include "Platform/running/posix/FileDescriptor.h"

namespace halvorn {

namespace {

// The number of the mount that the open file lies on; "" when the system does not tell.
std::string mountOf(const FileDescriptor& file, const std::string& procFolder) {
  std::ifstream information(procFolder + "/fdinfo/" + std::to_string(file.get()));
  for (std::string key, value; information >> key >> value;) {
    if (key == "mnt_id:") return value;
  }
  return "";
}

// A line of the table: number, parent, device, root, place, options, any number of
// tags, "-", type, source, options.
std::string typeOfMount(const std::string& mount, const std::string& procFolder) {
  std::ifstream table(procFolder + "/mountinfo");
  for (std::string line; std::getline(table, line);) {
    std::istringstream words(line);
    std::string word;
    if (!(words >> word) || word != mount) continue;
    while (words >> word && word != "-") continue;
    return words >> word ? word : "";
  }
  return "";
}

}  // namespace

MountedFileSystems::MountedFileSystems(const std::string& procFolder) : procFolder_(procFolder) {}

FileSystemAnswer MountedFileSystems::statusOf(const Text& path) const {
  if (path.find(u'\0') != Text::npos) return {-1, ""};
  // One look at the path: what is asked of the descriptor is about one and the same file.
  const FileDescriptor file(::open(path.bytes().c_str(), O_PATH | O_CLOEXEC));
  if (!file) return {-1, ""};
  struct statfs status = {};
  const int result = retried([&] { return ::fstatfs(file.get(), &status); });
  if (result != 0) return {result, ""};
  const std::string mount = mountOf(file, procFolder_);
  return {0, mount.empty() ? Text("") : Text(typeOfMount(mount, procFolder_))};
}

}  // namespace halvorn
