// halvorn audit: an installed product beside what it was installed from.
#include <filesystem>

#include "tools/halvorn/Command.h"
#include "tools/halvorn/TreeAudit.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

// Absolute, without a slash at its end.
std::string folderNamed(const Text& word) {
  std::error_code problem;
  const fs::path path = fs::absolute(word.bytes(), problem).lexically_normal();
  return path.has_filename() ? path.string() : path.parent_path().string();
}

PropertyDictionary factsOf(const TreeAudit& audit) {
  PropertyArray differences;
  for (const TreeDifference& each : audit.differences) {
    differences.emplace_back(PropertyDictionary{{"path", Text(each.path)},
                                                {"kind", Text(each.kind)},
                                                {"detail", Text(each.detail)},
                                                {"asItMust", each.isAsItMust}});
  }
  return {{"road", audit.road == Ownership::ThisProcess ? "administrator" : "ordinary"},
          {"items", static_cast<std::int64_t>(audit.items)},
          {"faults", static_cast<std::int64_t>(audit.faults())},
          {"differences", differences}};
}

void sayLines(const Call& call, const TreeAudit& audit) {
  for (const TreeDifference& each : audit.differences) {
    const std::string place = each.path.empty() ? "." : shown(Text(each.path));
    call.say((each.isAsItMust ? "as it must be: " : "FAULT: ") + place + ": " + each.kind +
             (each.detail.empty() ? "" : " (" + shown(Text(each.detail)) + ")"));
  }
  call.say(std::to_string(audit.items) + " items, " + std::to_string(audit.faults()) + " faults, installed " +
           (audit.road == Ownership::ThisProcess ? "with administrator rights" : "with ordinary rights"));
}

}  // namespace

Ending audit(const Call& call) {
  if (call.words.plain.size() != 2) return Ending::Misused;
  const std::string source = folderNamed(call.words.plain[0]);
  const std::string installed = folderNamed(call.words.plain[1]);
  for (const std::string& folder : {source, installed}) {
    std::error_code problem;
    if (fs::is_directory(folder, problem)) continue;
    call.complain("there is no folder " + shown(Text(folder)));
    return Ending::NoInput;
  }
  const TreeAudit made = auditOf(source, installed);
  const Ending ending = made.faults() == 0 ? Ending::Done : Ending::No;
  if (call.isJson()) {
    PropertyDictionary facts = factsOf(made);
    put(facts, "source", Text(source));
    put(facts, "installed", Text(installed));
    put(facts, "status", static_cast<int>(ending));
    call.sayJson(facts);
  } else {
    sayLines(call, made);
  }
  return ending;
}

}  // namespace halvorn
