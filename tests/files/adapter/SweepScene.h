// A small installation over an older copy, run again and again with one thing going wrong each time.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "tests/files/adapter/MountedScene.h"

namespace halvorn {

class SweepScene : public MountedScene {
 protected:
  // What is on the disk after a run.
  enum class Old { InPlace, InTrash, Lost };
  enum class New { Absent, Partial, Whole };
  struct Outcome {
    int status = -1000;
    std::vector<std::string> lines = {};  // of the log, from "ERROR" or "CAUSE" on
    Old old = Old::Lost;
    New fresh = New::Absent;
    bool wasInjected = false;
  };
  // The calls of one kind that the tool makes once it is at work: numbered from `first` to `last`.
  struct Calls {
    int first = 0;
    int last = 0;
  };

  void SetUp() override;

  // Runs the tool in a fresh scene; `injection` as strace has it ("openat:error=EIO:when=3"), or empty.
  [[nodiscard]] Outcome install(const std::string& injection);
  [[nodiscard]] std::map<std::string, Calls> callsOfTheTool();
  // What no run may do, whatever went wrong. One sentence for each thing that it did; empty when none.
  [[nodiscard]] std::string harm(const Outcome& outcome);
  [[nodiscard]] static std::string name(const Outcome& outcome);
  // The reason that the log's cause line gives; empty when there is no such line.
  [[nodiscard]] static std::string reason(const Outcome& outcome);

 private:
  // Whether the cause line names something in the source, the copy or the Trash.
  [[nodiscard]] bool namesAPath(const std::string& line) const;
  void prepare();
  [[nodiscard]] Old whereTheOldIs();
  [[nodiscard]] std::string trashFolder() const;
};

}  // namespace halvorn
