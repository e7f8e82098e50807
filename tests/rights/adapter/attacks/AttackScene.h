// A place where an attack on the administrator's tool is prepared, carried out and looked at.
// Why: docs/decisions/027-attacks-and-fuzzing.md
#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/PolkitWorld.h"

namespace halvorn {

// The real tool, and the one to be harmed.
struct AttackedTool {
  std::string path;
  bool isNaive = false;
};

class AttackScene {
 public:
  AttackScene(PolkitWorld& world, const AttackedTool& tool, const std::string& folder);

  [[nodiscard]] const AttackedTool& tool() const { return tool_; }
  [[nodiscard]] PolkitWorld& world() { return world_; }
  // A path in the scene, which belongs to root.
  [[nodiscard]] std::string operator/(const std::string& name) const { return folder_ + "/" + name; }

  static constexpr uid_t root = 0;
  static constexpr uid_t person = PolkitWorld::personId;
  // Folders above are made as needed, with the same owner.
  void addFolder(const std::string& path, mode_t mode = 0755, uid_t owner = root);
  void addFile(const std::string& path, const std::string& bytes, mode_t mode = 0644, uid_t owner = root);
  void addLink(const std::string& path, const std::string& target, uid_t owner = root);
  // A small bundle: Contents/Info.plist and the program Contents/Linux/Nas.
  void addProduct(const std::string& path, uid_t owner = person);
  // Of a file system that holds that many bytes.
  void addSmallDisk(const std::string& path, const std::string& size);

  struct Run {
    int status = 0;  // -1000 when it did not end in time
    std::string output;
    [[nodiscard]] bool hangs() const { return status == -1000; }
  };
  // As pkexec would start it for the person; `wrapper` "" for none.
  Run install(const std::string& source, const std::string& destination, const std::string& wrapper = "");
  // With any arguments and environment.
  Run run(const std::vector<std::string>& arguments, const std::vector<std::string>& environment,
          double seconds = kTestPatience);
  [[nodiscard]] static std::vector<std::string> pkexecEnvironment();
  [[nodiscard]] static std::vector<std::string> sudoEnvironment();

 private:
  PolkitWorld& world_;
  AttackedTool tool_;
  std::string folder_;
};

// Everything at and below the path as text: kinds, owners, modes, bytes. Two
// pictures are equal when nothing changed.
[[nodiscard]] std::string pictureOf(const std::string& path);
[[nodiscard]] std::optional<struct stat> factsOf(const std::string& path);  // of a link itself
[[nodiscard]] std::string bytesOf(const std::string& path);
// The first path at or below it for which the test holds.
[[nodiscard]] std::optional<std::string> findBelow(const std::string& path,
                                                   const std::function<bool(const std::string&)>& test);

// What an attack did, in a word; nullopt: nothing.
using Harm = std::optional<std::string>;

class AttackTest : public testing::Test {
 protected:
  void SetUp() override;
  // Carries the attack out twice: it must harm the naive tool, or it proves nothing,
  // and must not harm the real one.
  void expectDefended(const std::function<Harm(AttackScene&)>& attack);
  // For what even the naive tool withstands.
  void expectHarmless(const std::function<Harm(AttackScene&)>& attack);

  std::unique_ptr<PolkitWorld> world_;

 private:
  Harm carryOut(const std::function<Harm(AttackScene&)>& attack, const AttackedTool& tool);
  int scenes_ = 0;
};

}  // namespace halvorn
