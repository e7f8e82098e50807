// The commands of halvorn. Each takes its words, has the installer's own steps answer, and prints what they say.
#pragma once

#include <cstdio>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "Core/PropertyValue.h"
#include "tools/halvorn/Words.h"

namespace halvorn {

// The exit statuses. halvorn.1 tells them to people.
enum class Ending : int {
  Done = 0,
  No = 1,                   // the answer is no: something is not as it must be
  NothingToInstall = 2,     // the arguments and the product say too little
  SystemTooOld = 3,         // the product needs a newer system
  RefusedToQuit = 4,        // a program that must not run meanwhile still runs
  NotTrashed = 5,           // what is there could not be moved to the Trash
  NotCopied = 6,            // a copy failed, or would
  NotCopiedWithRights = 7,  // with administrator rights, or these cannot be had
  RightsNotGiven = 8,       // the person dismissed the question for them
  Interrupted = 9,          // by a signal, before anything was touched
  NotConfirmed = 10,        // nobody said yes
  Misused = 64,
  NoInput = 66,      // what a word names is not there
  Unavailable = 69,  // a program that is needed is not installed
  CannotCreate = 73
};

struct Call {
  Words words;
  // Where the answer goes, whatever becomes of the standard streams.
  std::FILE* output = stdout;
  std::FILE* complaints = stderr;

  [[nodiscard]] bool isJson() const { return words.has("--json"); }
  void say(const std::string& line) const { std::fputs((line + "\n").c_str(), output); }
  void complain(const std::string& line) const {
    std::fputs(("halvorn: " + line + "\n").c_str(), complaints);
  }
  // Whether somebody says yes: on the command line, or before a terminal when asked.
  [[nodiscard]] bool isConfirmed(const std::string& question) const;
  // An object on a line of its own.
  void sayJson(const PropertyDictionary& object) const;
};

using Command = Ending (*)(const Call&);
[[nodiscard]] Ending plan(const Call& call);
[[nodiscard]] Ending check(const Call& call);
[[nodiscard]] Ending image(const Call& call);
[[nodiscard]] Ending install(const Call& call);
[[nodiscard]] Ending report(const Call& call);
[[nodiscard]] Ending removeProduct(const Call& call);
[[nodiscard]] Ending audit(const Call& call);

inline void put(PropertyDictionary& facts, const Text& key, PropertyValue value) {
  facts.insert_or_assign(key, std::move(value));
}

// Printed on one line, control characters shown as what they are.
[[nodiscard]] std::string shown(const Text& text);

}  // namespace halvorn
