#include "tests/rights/adapter/attacks/AttackScene.h"

#include <sys/mount.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace halvorn {

namespace fs = std::filesystem;

namespace {

void own(const std::string& path, uid_t owner) {
  if (::lchown(path.c_str(), owner, owner) != 0) throw std::runtime_error(path + ": " + std::strerror(errno));
}

std::string describe(const std::string& path) {
  struct stat facts {};
  if (::lstat(path.c_str(), &facts) != 0) return path + " missing\n";
  std::string line = path + " " + std::to_string(facts.st_mode) + " " + std::to_string(facts.st_uid) + " " +
                     std::to_string(facts.st_gid) + " " + std::to_string(facts.st_ino);
  if (S_ISLNK(facts.st_mode)) line += " -> " + fs::read_symlink(path).string();
  if (S_ISREG(facts.st_mode)) line += " " + bytesOf(path);
  return line + "\n";
}

}  // namespace

AttackScene::AttackScene(PolkitWorld& world, const AttackedTool& tool, const std::string& folder)
    : world_(world), tool_(tool), folder_(folder) {
  addFolder(folder_);
}

void AttackScene::addFolder(const std::string& path, mode_t mode, uid_t owner) {
  const std::string parent = fs::path(path).parent_path();
  if (!fs::exists(parent)) addFolder(parent, 0755, owner);
  fs::create_directory(path);
  own(path, owner);
  ::chmod(path.c_str(), mode);
}

void AttackScene::addFile(const std::string& path, const std::string& bytes, mode_t mode, uid_t owner) {
  const std::string parent = fs::path(path).parent_path();
  if (!fs::exists(parent)) addFolder(parent, 0755, owner);
  std::ofstream(path, std::ios::binary) << bytes;
  own(path, owner);
  ::chmod(path.c_str(), mode);
}

void AttackScene::addLink(const std::string& path, const std::string& target, uid_t owner) {
  const std::string parent = fs::path(path).parent_path();
  if (!fs::exists(parent)) addFolder(parent, 0755, owner);
  fs::create_symlink(target, path);
  own(path, owner);
}

void AttackScene::addProduct(const std::string& path, uid_t owner) {
  addFolder(path, 0755, owner);
  addFile(path + "/Contents/Info.plist", "<plist/>", 0644, owner);
  addFile(path + "/Contents/Linux/Nas", "#!/bin/sh\n", 0755, owner);
}

void AttackScene::addSmallDisk(const std::string& path, const std::string& size) {
  addFolder(path);
  world_.mount("tmpfs", path, "tmpfs", 0, "mode=755,size=" + size);
}

std::vector<std::string> AttackScene::pkexecEnvironment() {
  return {"PKEXEC_UID=" + std::to_string(person), "PATH=/usr/sbin:/usr/bin:/sbin:/bin", "HOME=/root",
          "USER=root", "LOGNAME=root"};
}

std::vector<std::string> AttackScene::sudoEnvironment() {
  return {"SUDO_UID=" + std::to_string(person),
          "SUDO_COMMAND=/opt/train",
          "PATH=/usr/sbin:/usr/bin:/sbin:/bin",
          "HOME=/root",
          "USER=root",
          "LOGNAME=root"};
}

AttackScene::Run AttackScene::run(const std::vector<std::string>& arguments,
                                  const std::vector<std::string>& environment, double seconds) {
  std::vector<std::string> words{tool_.path};
  words.insert(words.end(), arguments.begin(), arguments.end());
  const CommandResult result = runCommand(words, {.environment = environment}, seconds);
  return {.status = result.status, .output = result.output};
}

AttackScene::Run AttackScene::install(const std::string& source, const std::string& destination,
                                      const std::string& wrapper) {
  std::vector<std::string> arguments{source, destination};
  if (!wrapper.empty()) arguments.push_back(wrapper);
  // The naive tool hangs where it can.
  return run(arguments, pkexecEnvironment(), tool_.isNaive ? 1 : 10);
}

std::string pictureOf(const std::string& path) {
  std::map<std::string, std::string> lines{{path, describe(path)}};
  if (fs::is_directory(fs::symlink_status(path))) {
    for (const auto& entry : fs::recursive_directory_iterator(path))
      lines[entry.path()] = describe(entry.path());
  }
  std::string picture;
  for (const auto& [ignored, line] : lines) picture += line;
  return picture;
}

std::optional<struct stat> factsOf(const std::string& path) {
  struct stat facts {};
  return ::lstat(path.c_str(), &facts) == 0 ? std::optional(facts) : std::nullopt;
}

std::string bytesOf(const std::string& path) {
  if (!fs::is_regular_file(fs::symlink_status(path))) return {};
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::optional<std::string> findBelow(const std::string& path,
                                     const std::function<bool(const std::string&)>& test) {
  if (!factsOf(path)) return std::nullopt;
  if (test(path)) return path;
  if (!fs::is_directory(fs::symlink_status(path))) return std::nullopt;
  for (const auto& entry : fs::recursive_directory_iterator(path)) {
    if (test(entry.path())) return entry.path();
  }
  return std::nullopt;
}

void AttackTest::SetUp() {
  if (const auto reason = PolkitWorld::missing()) GTEST_SKIP() << *reason;
  world_ = std::make_unique<PolkitWorld>(PolkitWorldParts{.bus = false});
}

Harm AttackTest::carryOut(const std::function<Harm(AttackScene&)>& attack, const AttackedTool& tool) {
  fs::remove_all(world_->homeFolder() + "/.local");
  AttackScene scene(*world_, tool, "/opt/scene-" + std::to_string(++scenes_));
  return attack(scene);
}

void AttackTest::expectDefended(const std::function<Harm(AttackScene&)>& attack) {
  EXPECT_NE(carryOut(attack, {KT_BINARY_DIR "/tests/kt_naive_tool", true}), std::nullopt)
      << "the attack harms nobody: it proves nothing";
  expectHarmless(attack);
}

void AttackTest::expectHarmless(const std::function<Harm(AttackScene&)>& attack) {
  const Harm harm = carryOut(attack, {KT_TRAIN, false});
  EXPECT_EQ(harm, std::nullopt) << *harm;
}

}  // namespace halvorn
