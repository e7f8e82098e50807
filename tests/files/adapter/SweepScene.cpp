#include "tests/files/adapter/SweepScene.h"

#include <sched.h>

#include <algorithm>
#include <sstream>
#include <string_view>

#include "tests/support/ChildProcess.h"
#include "tests/support/TreeCompare.h"

namespace halvorn {
namespace {

// One processor: the tool then works with one thread, and the n-th call is the same in every run.
void useOneProcessor() {
  cpu_set_t allowed;
  ASSERT_EQ(::sched_getaffinity(0, sizeof allowed, &allowed), 0);
  for (int processor = 0; processor < CPU_SETSIZE; ++processor) {
    if (!CPU_ISSET(processor, &allowed)) continue;
    cpu_set_t one;
    CPU_ZERO(&one);
    CPU_SET(processor, &one);
    ASSERT_EQ(::sched_setaffinity(0, sizeof one, &one), 0);
    return;
  }
}

std::string readAll(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace

void SweepScene::SetUp() {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "a sanitized tool makes calls of its own, and its leak check cannot run below strace";
#endif
  MountedScene::SetUp();
  if (IsSkipped() || HasFatalFailure()) return;
  if (::access("/usr/bin/strace", X_OK) != 0) GTEST_SKIP() << "strace is not installed";
  // A file system of its own, so that no Trash appears in the machine's.
  const std::string failure = mountNew("ext4", "disk", 64);
  if (!failure.empty()) GTEST_SKIP() << failure;
  useOneProcessor();
  addFile("disk/source/Nas.app/Contents/program", std::string(9'000, 'p'));
  addFile("disk/source/Nas.app/Contents/Info.plist", "version 2");
  // Big enough to be copied in the way of big files.
  addFile("disk/source/Nas.app/Resources/icon", std::string(1'100'000, 'i'));
  addLink("disk/source/Nas.app/Contents/link", "program");
  ASSERT_EQ(
      ::link(at("disk/source/Nas.app/Contents/program").c_str(), at("disk/source/Nas.app/hard").c_str()), 0);
  (void)setAttribute("disk/source/Nas.app/Contents/program", "user.note", "hello");
  addFile("disk/old/Nas.app/Contents/Info.plist", "version 1");
  addFile("disk/old/Nas.app/Contents/only in the old", "kept");
  ASSERT_EQ(run({"cp", "-a", at("disk/source"), at("disk/original")}), "");
}

void SweepScene::prepare() {
  for (const char* path : {"disk/apps", "disk/home", "disk/.Trash-0"}) std::filesystem::remove_all(at(path));
  addFile("disk/apps/bystander", "untouched");
  addFolder("disk/home");
  std::filesystem::copy(at("disk/old/Nas.app"), at("disk/apps/Nas.app"),
                        std::filesystem::copy_options::recursive);
}

std::map<std::string, SweepScene::Calls> SweepScene::callsOfTheTool() {
  prepare();
  (void)runCommand({"strace", "-f", "-qq", "-o", at("trace"), "env", "-i", "HOME=" + at("disk/home"),
                    KT_TRAIN, at("disk/source/Nas.app"), at("disk/apps/Nas.app")});
  std::map<std::string, Calls> calls;
  std::istringstream trace(readAll(at("trace")));
  bool isAtWork = false;
  for (std::string line; std::getline(trace, line);) {
    const std::size_t start = line.find_first_not_of("0123456789 ");
    const std::size_t end = line.find('(');
    if (end == std::string::npos || start > end) continue;
    const std::string call = line.substr(start, end - start);
    // The first look at the source, the start of the program apart.
    if (call != "execve" && line.find(at("disk/source")) != std::string::npos) isAtWork = true;
    Calls& these = calls[call];
    ++these.last;
    if (!isAtWork) these.first = these.last;
  }
  for (auto& [ignored, these] : calls) ++these.first;
  return calls;
}

SweepScene::Outcome SweepScene::install(const std::string& injection) {
  prepare();
  const std::string call = injection.substr(0, injection.find(':'));
  std::vector<std::string> command;
  if (!injection.empty()) {
    command = {"strace", "-f", "-qq", "-o", at("trace"), "-e", "trace=" + call, "-e", "inject=" + injection};
  }
  for (const std::string& word :
       {std::string("env"), std::string("-i"), "HOME=" + at("disk/home"), std::string(KT_TRAIN),
        at("disk/source/Nas.app"), at("disk/apps/Nas.app")}) {
    command.push_back(word);
  }
  const CommandResult result = runCommand(command);
  Outcome outcome{.status = result.status};
  std::istringstream output(result.output);
  for (std::string line; std::getline(output, line);) {
    const std::size_t start = std::min(line.find("ERROR -- "), line.find("CAUSE -- "));
    outcome.lines.push_back(start == std::string::npos ? line : line.substr(start));
  }
  outcome.wasInjected = !injection.empty() && readAll(at("trace")).find("INJECTED") != std::string::npos;
  outcome.old = whereTheOldIs();
  const bool isOldInPlace = outcome.old == Old::InPlace;
  if (exists("disk/apps/Nas.app") && !isOldInPlace) {
    const bool isWhole = differencesBetween(at("disk/original/Nas.app"), at("disk/apps/Nas.app")).empty();
    outcome.fresh = isWhole ? New::Whole : New::Partial;
  }
  return outcome;
}

std::string SweepScene::trashFolder() const {
  for (const char* path : {"disk/home/.local/share/Trash", "disk/.Trash-0"}) {
    if (exists(std::string(path) + "/files/Nas.app")) return path;
  }
  return "";
}

SweepScene::Old SweepScene::whereTheOldIs() {
  const auto isOld = [&](const std::string& path) {
    return contents(path + "/Contents/Info.plist") == "version 1" &&
           contents(path + "/Contents/only in the old") == "kept";
  };
  if (isOld("disk/apps/Nas.app")) return Old::InPlace;
  const std::string trash = trashFolder();
  // Without its information nobody would see it there.
  const std::string path = contents(trash + "/info/Nas.app.trashinfo");
  return !trash.empty() && isOld(trash + "/files/Nas.app") && path.find("apps/Nas.app\n") != std::string::npos
             ? Old::InTrash
             : Old::Lost;
}

std::string SweepScene::harm(const Outcome& outcome) {
  const std::string destination = at("disk/apps/Nas.app");
  const std::vector<std::string> notTrashed = {"ERROR -- Could not trash '" + destination + "'",
                                               "ERROR -- Could not trash existing " + destination};
  const std::vector<std::string> notCopied = {"ERROR -- Could not copy myself to " + destination};
  std::vector<std::string> lines = outcome.lines;
  std::string sentences;
  if (outcome.status == 1 || outcome.status == 2) {
    if (lines.empty() || !namesAPath(lines.front())) sentences += "No line names the cause. ";
    if (!lines.empty()) lines.erase(lines.begin());
  }
  if (outcome.old == Old::Lost) sentences += "The old copy is lost. ";
  if (contents("disk/apps/bystander") != "untouched") sentences += "A bystander was touched. ";
  if (!differencesBetween(at("disk/original"), at("disk/source")).empty())
    sentences += "The source was touched. ";
  switch (outcome.status) {
    case 0:
      if (outcome.fresh != New::Whole || outcome.old != Old::InTrash)
        sentences += "Success is not what is there. ";
      if (!outcome.lines.empty()) sentences += "Success with a log. ";
      break;
    case 1:
      if (lines != notTrashed) sentences += "The lines for status 1 are missing. ";
      if (outcome.old != Old::InPlace) sentences += "Status 1 moved the old copy. ";
      break;
    case 2:
      if (lines != notCopied) sentences += "The line for status 2 is missing. ";
      if (outcome.fresh == New::Whole && outcome.old == Old::Lost)
        sentences += "Status 2 replaced the old copy. ";
      break;
    default:
      // Killed: what is there must still be one of the states above, which the first sentence says.
      if (outcome.status >= 0)
        sentences += "A status nobody speaks of: " + std::to_string(outcome.status) + ". ";
  }
  return sentences;
}

bool SweepScene::namesAPath(const std::string& line) const {
  for (const char* place : {"disk/source/Nas.app", "disk/apps/Nas.app", "disk/home/.local", "disk/.Trash"}) {
    if (line.starts_with("CAUSE -- ") && line.find(": " + at(place)) != std::string::npos) return true;
  }
  return false;
}

std::string SweepScene::reason(const Outcome& outcome) {
  constexpr std::string_view start = "CAUSE -- ";
  if (outcome.lines.empty() || !outcome.lines.front().starts_with(start)) return "";
  const std::string& line = outcome.lines.front();
  return line.substr(start.size(), line.find(": /") - start.size());
}

std::string SweepScene::name(const Outcome& outcome) {
  const char* const old = outcome.old == Old::InPlace ? "old in place" : "old in Trash";
  const char* const fresh = outcome.fresh == New::Absent    ? "no new"
                            : outcome.fresh == New::Partial ? "new partial"
                                                            : "new whole";
  return "status " + std::to_string(outcome.status) + ", " + (outcome.old == Old::Lost ? "OLD LOST" : old) +
         ", " + fresh;
}

}  // namespace halvorn
