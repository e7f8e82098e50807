#include "tests/rights/adapter/attacks/Obligations.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <utility>

namespace halvorn {
namespace {

using Name = std::pair<std::string, std::string>;  // folder and name in it

const char* const kNoLink = "no link followed";
const char* const kExclusive = "made exclusively";
const char* const kCompared = "compared afterwards";
const char* const kByDescriptor = "changed by descriptor";
const char* const kGiven = "given after a look";

// "5</opt/x>"
struct Descriptor {
  int number = -1;
  std::string path;
};

std::vector<std::string> partsOf(const std::string& arguments) {
  std::vector<std::string> parts(1);
  int depth = 0;
  bool isQuoted = false;
  for (std::size_t at = 0; at < arguments.size(); ++at) {
    const char character = arguments[at];
    if (isQuoted && character == '\\') {
      parts.back() += arguments.substr(at++, 2);
      continue;
    }
    if (character == '"') isQuoted = !isQuoted;
    if (!isQuoted && std::string("<[{(").find(character) != std::string::npos) ++depth;
    if (!isQuoted && std::string(">]})").find(character) != std::string::npos) --depth;
    if (!isQuoted && depth == 0 && character == ',') {
      parts.emplace_back();
      if (at + 1 < arguments.size() && arguments[at + 1] == ' ') ++at;
    } else {
      parts.back().push_back(character);
    }
  }
  return parts;
}

Descriptor descriptorIn(const std::string& text) {
  Descriptor descriptor;
  const std::size_t open = text.find('<');
  if (!text.starts_with("AT_FDCWD"))
    descriptor.number = static_cast<int>(std::strtol(text.c_str(), nullptr, 0));
  if (open != std::string::npos) descriptor.path = text.substr(open + 1, text.rfind('>') - open - 1);
  return descriptor;
}

std::string unquoted(const std::string& text) {
  return text.size() >= 2 && text.front() == '"' ? text.substr(1, text.size() - 2) : "";
}

bool has(const std::string& text, const char* word) { return text.find(word) != std::string::npos; }

// What is known of an open descriptor.
struct Held {
  std::optional<Name> name = std::nullopt;  // how it was reached, in a folder open to others
  bool isNew = false;                       // by its own opening, which made it exclusively
  bool isSeen = false;
  bool isOfItsAge = false;
};

class Judge {
 public:
  explicit Judge(const std::function<bool(const std::string&)>& isOpen) : isOpen_(isOpen) {}

  Judgement run(const std::vector<Call>& calls) {
    for (const Call& call : calls) look(call);
    for (const auto* owed : {&made_, &linked_}) {
      for (const auto& [ignored, making] : *owed) violate(kCompared, "nobody looked after " + making);
    }
    return std::move(judgement_);
  }

 private:
  using Parts = std::vector<std::string>;
  using Look = void (Judge::*)(const Call&, const Parts&);

  static const std::map<std::string, Look>& looks() {
    static const std::map<std::string, Look> all{{"openat", &Judge::lookAtOpening},
                                                 {"openat2", &Judge::lookAtOpening},
                                                 {"close", &Judge::lookAtClosing},
                                                 {"fcntl", &Judge::lookAtCopying},
                                                 {"newfstatat", &Judge::lookAtLooking},
                                                 {"fstat", &Judge::lookAtLooking},
                                                 {"statx", &Judge::lookAtLooking},
                                                 {"mkdirat", &Judge::lookAtMaking},
                                                 {"mknodat", &Judge::lookAtMaking},
                                                 {"symlinkat", &Judge::lookAtMaking},
                                                 {"linkat", &Judge::lookAtLinking},
                                                 {"renameat2", &Judge::lookAtMoving},
                                                 {"unlinkat", &Judge::lookAtRemoving},
                                                 {"fchmod", &Judge::lookAtChanging},
                                                 {"fchown", &Judge::lookAtChanging},
                                                 {"fsetxattr", &Judge::lookAtChanging},
                                                 {"fremovexattr", &Judge::lookAtChanging},
                                                 {"ftruncate", &Judge::lookAtChanging},
                                                 {"fallocate", &Judge::lookAtChanging},
                                                 {"pwrite64", &Judge::lookAtChanging},
                                                 {"fchownat", &Judge::lookAtChangingHeld},
                                                 {"fchmodat2", &Judge::lookAtChangingHeld},
                                                 {"syscall_0x1c4", &Judge::lookAtChangingHeld},
                                                 {"utimensat", &Judge::lookAtChangingHeld},
                                                 {"chmod", &Judge::lookAtChangingByProcess},
                                                 {"setxattr", &Judge::lookAtChangingByProcess},
                                                 {"removexattr", &Judge::lookAtChangingByProcess}};
    return all;
  }

  void look(const Call& call) {
    static const std::set<std::string> onlyLook{"readlink",   "readlinkat", "access",     "faccessat",
                                                "faccessat2", "lgetxattr",  "llistxattr", "statfs",
                                                "execve",     "stat",       "lstat",      "connect"};
    now_ = call.name + "(" + call.arguments + ")";
    const auto found = looks().find(call.name);
    // The person could do without the tool what is done with the person's rights; but what that opens, counts.
    if (call.isThePersons && !has(call.name, "open") && call.name != "close" && call.name != "fcntl") return;
    if (found != looks().end()) return (this->*found->second)(call, partsOf(call.arguments));
    if (namelessCalls().contains(call.name) || onlyLook.contains(call.name)) return;
    if (call.name == "chdir" && call.arguments == "\"/\"") return;
    violate(kByDescriptor, "nothing is known of it");
  }

  void owe(const char* kind, bool isKept, const std::string& why) {
    ++judgement_.obligations[kind];
    if (!isKept) violate(kind, why);
  }
  void violate(const char* kind, const std::string& why) {
    judgement_.violations.push_back(std::string(kind) + ": " + why + ": " + now_);
  }

  // Whether somebody else may change what a name in there means.
  [[nodiscard]] bool isOpenBelow(const std::string& path) const {
    for (std::size_t slash = path.find('/', 1); slash != std::string::npos;
         slash = path.find('/', slash + 1)) {
      if (isOpen_(path.substr(0, slash))) return true;
    }
    return isOpen_("/");
  }

  void lookAtOpening(const Call& call, const Parts& parts) {
    const Descriptor folder = descriptorIn(parts.at(0));
    const std::string name = unquoted(parts.at(1));
    const std::string how = parts.at(2);
    const bool isPath = name.starts_with('/') || folder.number < 0;
    const bool isStep = name == "." || name == "..";
    Held held;
    if (call.isThePersons) {
      // Whatever it is: the person may have chosen it.
      held.name = Name(folder.path, name);
    } else if (isPath) {
      // Held to compare it with others, or where nobody else writes.
      owe(kNoLink, has(how, "O_PATH") || !isOpenBelow(name), "a path through a folder open to others");
    } else if (!isStep && (has(name, "/") ? isOpenBelow(folder.path + "/" + name) : isOpen_(folder.path))) {
      const bool isOneStep = !has(name, "/");
      owe(kNoLink,
          call.name == "openat2" ? has(how, "RESOLVE_NO_SYMLINKS") : isOneStep && has(how, "O_NOFOLLOW"),
          "it may be a link");
      if (has(how, "O_CREAT")) owe(kExclusive, has(how, "O_EXCL"), "it may be there");
      held.name = Name(folder.path, name);
    } else if (isStep && held_.contains(folder.number) && name == ".") {
      held = held_[folder.number];
    }
    hasReadMounts_ = hasReadMounts_ || name == "/proc/self/mountinfo";
    held.isNew = has(how, "O_CREAT") && has(how, "O_EXCL");
    const Descriptor opened = descriptorIn(call.answer);
    if (opened.number >= 0) held_[opened.number] = held;
  }

  void lookAtClosing(const Call&, const Parts& parts) { held_.erase(descriptorIn(parts.at(0)).number); }

  void lookAtCopying(const Call& call, const Parts& parts) {
    const Descriptor copy = descriptorIn(call.answer);
    const auto original = held_.find(descriptorIn(parts.at(0)).number);
    if (!has(parts.at(1), "F_DUPFD") || copy.number < 0) return;
    if (original != held_.end()) held_[copy.number] = original->second;
  }

  void lookAtLooking(const Call& call, const Parts& parts) {
    const Descriptor item = descriptorIn(parts.at(0));
    const bool isOfTheItem = call.name == "fstat" || unquoted(parts.at(1)).empty();
    if (!isOfTheItem) {
      if (item.number < 0 || !isOpen_(item.path)) return;
      owe(kNoLink, has(call.arguments, "AT_SYMLINK_NOFOLLOW"), "what a link leads to is looked at");
      linked_.erase({item.path, unquoted(parts.at(1))});
      return;
    }
    const auto held = held_.find(item.number);
    if (held == held_.end()) return;
    held->second.isSeen = held->second.isSeen || call.name != "statx";
    held->second.isOfItsAge = held->second.isOfItsAge || has(call.arguments, "STATX_BTIME");
    if (held->second.name && held->second.isSeen) {
      moved_.erase(*held->second.name);
      if (held->second.isOfItsAge) made_.erase(*held->second.name);
    }
  }

  void lookAtMaking(const Call& call, const Parts& parts) {
    const bool isLink = call.name == "symlinkat";
    const Descriptor folder = descriptorIn(parts.at(isLink ? 1 : 0));
    const std::string name = unquoted(parts.at(isLink ? 2 : 1));
    if (!expectStep(folder, name) || !isOpen_(folder.path) || call.answer != "0") return;
    ++judgement_.obligations[kCompared];
    made_[{folder.path, name}] = now_;
  }

  void lookAtLinking(const Call& call, const Parts& parts) {
    for (const std::size_t side : {std::size_t{0}, std::size_t{2}})
      (void)expectStep(descriptorIn(parts.at(side)), unquoted(parts.at(side + 1)));
    const Descriptor folder = descriptorIn(parts.at(2));
    if (!isOpen_(folder.path)) return;
    owe(kNoLink, parts.at(4) == "0", "the original may be a link");
    if (call.answer != "0") return;
    ++judgement_.obligations[kCompared];
    linked_[{folder.path, unquoted(parts.at(3))}] = now_;
  }

  void lookAtMoving(const Call& call, const Parts& parts) {
    for (const std::size_t side : {std::size_t{0}, std::size_t{2}})
      (void)expectStep(descriptorIn(parts.at(side)), unquoted(parts.at(side + 1)));
    const Descriptor folder = descriptorIn(parts.at(2));
    if (!isOpen_(folder.path)) return;
    owe(kExclusive, parts.at(4) == "RENAME_NOREPLACE", "something may be there");
    if (call.answer == "0") moved_[{folder.path, unquoted(parts.at(3))}] = now_;
  }

  void lookAtRemoving(const Call&, const Parts& parts) {
    (void)expectStep(descriptorIn(parts.at(0)), unquoted(parts.at(1)));
  }

  // A name in a folder that is held.
  bool expectStep(const Descriptor& folder, const std::string& name) {
    const bool isStep = folder.number >= 0 && !name.empty() && !has(name, "/");
    if (!isStep || isOpen_(folder.path)) owe(kNoLink, isStep, "no step from a folder that is held");
    return isStep;
  }

  void lookAtChanging(const Call& call, const Parts& parts) {
    change(descriptorIn(parts.at(0)).number,
           call.name == "fchown" && parts.at(1) != "0" ? IsGift::Yes : IsGift::No);
  }

  void lookAtChangingHeld(const Call& call, const Parts& parts) {
    const Descriptor item = descriptorIn(parts.at(0));
    const std::string name = parts.at(1);
    // An old tracer knows neither the call nor what its words mean: the flags say that there is no name.
    const bool isHeld = call.name == "syscall_0x1c4" ? parts.at(3) == "0x1000"
                        : call.name == "utimensat"   ? name == "NULL" || name == "\"\""
                                                     : name == "\"\"" && has(call.arguments, "AT_EMPTY_PATH");
    if (isHeld) {
      const bool isGift = call.name == "fchownat" && parts.at(2) != "0" && parts.at(2) != "-1";
      return change(item.number, isGift ? IsGift::Yes : IsGift::No);
    }
    if (call.name == "utimensat" && item.number >= 0 && has(call.arguments, "AT_SYMLINK_NOFOLLOW") &&
        !isOpen_(item.path))
      return;
    owe(kByDescriptor, false, "by name");
  }

  void lookAtChangingByProcess(const Call&, const Parts& parts) {
    const std::string start = "/proc/self/fd/";
    const std::string path = unquoted(parts.at(0));
    const bool isHeld = path.starts_with(start) && !has(path.substr(start.size()), "/");
    if (isHeld) return change(std::atoi(path.substr(start.size()).c_str()), IsGift::No);
    owe(kByDescriptor, false, "by path");
  }

  enum class IsGift { No, Yes };
  void change(int number, IsGift isGift) {
    const auto held = held_.find(number);
    if (isGift == IsGift::Yes) giveAway(held == held_.end() ? Held{} : held->second);
    if (held == held_.end() || !held->second.name || held->second.isNew) return;
    owe(kByDescriptor, held->second.isSeen, "nobody looked what it is");
    owe(kByDescriptor, !made_.contains(*held->second.name), "nobody looked whether it is what was made");
  }

  void giveAway(const Held& item) {
    owe(kGiven, item.isSeen && (item.isOfItsAge || hasReadMounts_),
        "not looked at, or mounted who knows where");
    owe(kGiven, moved_.empty(), "it may not be what was moved");
  }

  const std::function<bool(const std::string&)>& isOpen_;
  Judgement judgement_;
  std::string now_;
  std::map<int, Held> held_;
  std::map<Name, std::string> made_;    // and not yet compared
  std::map<Name, std::string> linked_;  // likewise
  std::map<Name, std::string> moved_;   // likewise
  bool hasReadMounts_ = false;
};

}  // namespace

int Judgement::count() const {
  int sum = 0;
  for (const auto& [ignored, number] : obligations) sum += number;
  return sum;
}

Judgement judge(const std::vector<Call>& calls, const std::function<bool(const std::string&)>& isOpen) {
  return Judge(isOpen).run(calls);
}

}  // namespace halvorn
