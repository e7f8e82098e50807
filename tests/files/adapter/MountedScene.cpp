#include "tests/files/adapter/MountedScene.h"

#include <sys/mount.h>
#include <sys/resource.h>

#include "tests/support/ChildProcess.h"
#include "tests/support/OwnMounts.h"

namespace halvorn {

void MountedScene::SetUp() {
  if (const auto reason = enterOwnMounts()) GTEST_SKIP() << *reason;
  // The comparison of trees keeps two descriptors for every level.
  rlimit open{};
  ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &open), 0);
  open.rlim_cur = open.rlim_max;
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &open), 0);
}

void MountedScene::TearDown() {
  for (auto name = mounted_.rbegin(); name != mounted_.rend(); ++name)
    ::umount2(at(*name).c_str(), MNT_DETACH);
}

std::string MountedScene::run(const std::vector<std::string>& command) {
  const CommandResult result = runCommand(command, {}, 50);
  return result.status == 0 ? ""
                            : command.front() + " " + std::to_string(result.status) + ": " + result.output;
}

std::string MountedScene::mountAt(const std::string& name, std::vector<std::string> arguments) {
  addFolder(name);
  arguments.insert(arguments.begin(), "mount");
  arguments.push_back(at(name));
  const std::string failure = run(arguments);
  if (failure.empty()) mounted_.push_back(name);
  return failure;
}

std::string MountedScene::mountNew(const std::string& kind, const std::string& name, int megabytes) {
  if (kind == "tmpfs") {
    return mountAt(name, {"-t", "tmpfs", "-o", "size=" + std::to_string(megabytes) + "m", "tmpfs"});
  }
  const std::string image = at(name + ".image");
  if (::truncate((std::ofstream(image), image).c_str(), off_t{megabytes} << 20) != 0) return "truncate";
  std::vector<std::string> make = {"mkfs." + kind, "-q"};
  // Blocks as on big disks: links and attributes may be no longer than one.
  if (kind == "ext4") make.insert(make.end(), {"-F", "-b", "4096", "-O", "ea_inode"});
  make.push_back(image);
  const std::string failure = run(make);
  return failure.empty() ? mountAt(name, {"-o", "loop", image}) : failure;
}

}  // namespace halvorn
