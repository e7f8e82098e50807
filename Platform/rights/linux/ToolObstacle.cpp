#include "Platform/rights/linux/ToolObstacle.h"

#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/sysmacros.h>

#include <cerrno>
#include <fstream>
#include <iterator>
#include <sstream>

#include "Core/ForPeople.h"

namespace halvorn {
namespace {

using Kind = ToolObstacle::Kind;

// Some dialogs read what they show as markup.
bool holdsMarkup(const std::string& word) {
  return word.find('<') != std::string::npos || word.find("&#") != std::string::npos;
}

std::string mountsOfThisProcess() {
  std::ifstream file("/proc/self/mountinfo");
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

bool isPrivateMount(const std::string& mounts, unsigned major, unsigned minor) {
  const std::string device = std::to_string(major) + ":" + std::to_string(minor);
  std::istringstream lines(mounts);
  for (std::string line; std::getline(lines, line);) {
    // 36 35 98:0 /root /mount/point options [optional fields] - type source options
    std::istringstream words(line);
    std::string number, parent, deviceHere;
    words >> number >> parent >> deviceHere;
    const std::size_t dash = line.find(" - ");
    if (deviceHere != device || dash == std::string::npos) continue;
    std::istringstream behindDash(line.substr(dash + 3));
    std::string type, source, options;
    behindDash >> type >> source >> options;
    if (type != "fuse" && type != "fuseblk" && !type.starts_with("fuse.")) return false;
    options = "," + options + ",";
    return options.find(",allow_other,") == std::string::npos &&
           options.find(",user_id=0,") == std::string::npos;
  }
  return false;
}

std::optional<ToolObstacle> obstacleToTool(const std::string& toolPath) {
  if (!toolPath.starts_with('/') || toolPath.find('\0') != std::string::npos) {
    return ToolObstacle{Kind::NoAbsolutePath, EINVAL};
  }
  const Text path(toolPath);
  if (undisguised(path) != path) return ToolObstacle{Kind::Disguised, EINVAL};
  struct stat facts {};
  if (::stat(toolPath.c_str(), &facts) != 0) return ToolObstacle{Kind::Missing, errno};
  if (!S_ISREG(facts.st_mode)) return ToolObstacle{Kind::NotAFile, EACCES};
  if ((facts.st_mode & (S_IXUSR | S_IXGRP | S_IXOTH)) == 0) return ToolObstacle{Kind::NotExecutable, EACCES};
  struct statvfs medium {};
  if (::statvfs(toolPath.c_str(), &medium) == 0 && (medium.f_flag & ST_NOEXEC) != 0) {
    return ToolObstacle{Kind::MediumNoexec, EACCES};
  }
  if (isPrivateMount(mountsOfThisProcess(), major(facts.st_dev), minor(facts.st_dev))) {
    return ToolObstacle{Kind::MediumPrivate, EACCES};
  }
  return std::nullopt;
}

std::optional<WordsObstacle> obstacleToShowing(const std::vector<Text>& words) {
  std::size_t length = 0;
  for (const Text& word : words) {
    if (undisguised(word) != word || holdsMarkup(word.bytes()))
      return WordsObstacle{WordsObstacle::Kind::Disguised, word};
    length += word.units().size() + 1;
  }
  if (length > kMostShownWords) return WordsObstacle{WordsObstacle::Kind::TooLong, {}};
  return std::nullopt;
}

}  // namespace halvorn
