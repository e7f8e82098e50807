// What is read out of other programs' texts before and after administrator rights are asked for.
#include <gtest/gtest.h>

#include "Platform/rights/linux/PkexecComplaint.h"
#include "Platform/rights/linux/ToolObstacle.h"
#include "Platform/rights/null/NullRights.h"
#include "train/PrivilegedProcess.h"

namespace halvorn {
namespace {

TEST(PkexecComplaint, EachTextHasItsMeaning) {
  const std::string incident = "\n\nThis incident has been reported.\n";
  const struct {
    std::string text;
    PkexecComplaint meaning;
    const char* why;
  } cases[] = {
      {"Error executing command as another user: Not authorized" + incident, PkexecComplaint::NotAuthorized,
       "rule"},
      {"Error executing command as another user: No authentication agent found.\n", PkexecComplaint::NoAgent,
       "agent"},
      {"Error getting authority: Error initializing authority: Could not connect: No such file or "
       "directory\n",
       PkexecComplaint::NoSystemBus, "no bus"},
      {"Error getting authority: Error initializing authority: "
       "GDBus.Error:org.freedesktop.DBus.Error.ServiceUnknown: "
       "The name org.freedesktop.PolicyKit1 was not provided by any .service files\n",
       PkexecComplaint::NoPolicyDaemon, "no daemon"},
      {"Error checking for authorization org.freedesktop.policykit.exec: "
       "GDBus.Error:org.freedesktop.DBus.Error.NoReply: "
       "Message recipient disconnected\n",
       PkexecComplaint::NoPolicyDaemon, "it went away"},
      {"pkexec must be setuid root\n", PkexecComplaint::NotPrivileged, "sandbox"},
      {"Error accessing /media/x/train: Permission denied\n", PkexecComplaint::ToolUnreachable,
       "closed folder"},
      {"Cannot run program train: No such file\n", PkexecComplaint::ToolUnreachable, "vanished"},
      {"Error executing /opt/x/train: Exec format error\n", PkexecComplaint::ToolUnstartable,
       "not a program"},
      {"", PkexecComplaint::Unknown, "silence"},
      {"Speicherzugriffsfehler\n", PkexecComplaint::Unknown, "anything else"},
  };
  for (const auto& [text, meaning, why] : cases) EXPECT_EQ(complaintFrom(text), meaning) << why;
}

TEST(PrivateMount, OnlyAPersonsOwnMountIsClosedToTheAdministrator) {
  const auto mount = [](const std::string& type, const std::string& options) {
    return "22 1 8:1 / / rw - ext4 /dev/sda1 rw\n36 22 0:44 / /media/x rw,nosuid shared:7 master:1 - " +
           type + " src " + options + "\n";
  };
  EXPECT_TRUE(isPrivateMount(mount("fuse", "rw,user_id=1000,group_id=1000"), 0, 44));
  EXPECT_TRUE(isPrivateMount(mount("fuse.squashfuse", "ro,user_id=1000"), 0, 44));
  EXPECT_FALSE(isPrivateMount(mount("fuse.x", "rw,user_id=1000,allow_other"), 0, 44)) << "open to all";
  EXPECT_FALSE(isPrivateMount(mount("fuseblk", "rw,user_id=0,group_id=0,allow_other"), 0, 44)) << "a disk";
  EXPECT_FALSE(isPrivateMount(mount("fuse.x", "rw,user_id=0"), 0, 44)) << "the administrator's own";
  EXPECT_FALSE(isPrivateMount(mount("ext4", "rw,user_id=1000"), 0, 44)) << "no FUSE";
  EXPECT_FALSE(isPrivateMount(mount("fuse", "rw,user_id=1000"), 8, 1)) << "another device";
  EXPECT_FALSE(isPrivateMount("", 0, 44));
  EXPECT_FALSE(isPrivateMount("0:44\n - \n36 22 0:44", 0, 44)) << "torn lines";
}

// The dialog for the password would show another path.
TEST(ToolObstacle, NobodyIsAskedForAToolWhosePathHidesSomething) {
  for (const char* path :
       {"/media/anna/\u202Egpj/train", "/media/anna/a\u200Bb/train", "/media/anna/a\nb/train"}) {
    const auto obstacle = obstacleToTool(path);
    ASSERT_TRUE(obstacle) << path;
    EXPECT_EQ(obstacle->kind, ToolObstacle::Kind::Disguised) << path;
    EXPECT_NE(obstacle->error, 0);
  }
  EXPECT_EQ(obstacleToTool("/media/Grüße אבג/train")->kind, ToolObstacle::Kind::Missing);
}

// So would what the tool is told, where the dialog shows that.
TEST(ToolObstacle, NobodyIsAskedForWordsThatHideSomethingOrAreTooMany) {
  using Kind = WordsObstacle::Kind;
  EXPECT_FALSE(obstacleToShowing({}));
  EXPECT_FALSE(
      obstacleToShowing({"/media/anna/My Disk/A & B/Grüße אבג.app", "/opt/\U0001F469\u200D\U0001F52C.app"}));
  for (const char* word : {"/media/\u202Egnp.app", "/media/a\u200Bb.app", "/opt/a.app\nAll is well",
                           "/opt/\u00ADa", "/opt/<b>a", "/opt/a&#x202E;b"}) {
    const auto obstacle = obstacleToShowing({"/media/Foo.app", word});
    ASSERT_TRUE(obstacle) << word;
    EXPECT_EQ(obstacle->kind, Kind::Disguised) << word;
    EXPECT_EQ(obstacle->word, Text(word));
  }
  const auto ofLength = [](std::size_t length) { return Text("/" + std::string(length - 1, 'x')); };
  EXPECT_FALSE(obstacleToShowing({ofLength(kMostShownWords - 3), "/"})) << "with a blank behind each";
  EXPECT_EQ(obstacleToShowing({ofLength(kMostShownWords - 2), "/"})->kind, Kind::TooLong);
}

TEST(PrivilegedProcess, APlainPathIsAbsoluteAndNeverGoesUp) {
  const auto plain = [](const char* path) {
    const char* const list[] = {path, nullptr};
    return arePlainPaths(list);
  };
  for (const char* path : {"/", "//", "/a", "/a/", "/a//b", "/a/.b", "/...", "/a/..b", "/a/b..", "/a/./b"}) {
    EXPECT_TRUE(plain(path)) << path;
  }
  for (const char* path : {"", ".", "..", "a", "-a", "~/a", "/..", "/../a", "/a/..", "/a/../b", "/a//../b"}) {
    EXPECT_FALSE(plain(path)) << path;
  }
}

TEST(NullAuthorizer, RefusesEverybody) {
  NullAuthorizer authorizer;
  const auto result = authorizer.requestAdministratorRights("/bin/true", {});
  EXPECT_EQ(result.answer, AuthorizationAnswer::Refused);
  EXPECT_EQ(result.authorization, nullptr);
}

}  // namespace
}  // namespace halvorn
