// Where programs keep data, and who asked for administrator rights, by the customs of this system.
#include <charconv>
#include <string_view>
#include <utility>

#include "Platform/rights/posix/Confinement.h"
#include "Platform/rights/posix/Person.h"
#include "Platform/rights/posix/Requester.h"

namespace halvorn {
namespace {

constexpr const char* kRequesters[] = {"SUDO_UID"};
constexpr const char* kFolders[] = {"HOME"};

std::optional<uid_t> uidFrom(std::string_view text) {
  uid_t uid = 0;
  const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), uid);
  const bool isNumber = error == std::errc() && stop == text.data() + text.size();
  return isNumber ? std::optional(uid) : std::nullopt;
}

}  // namespace

namespace DataFolders {
std::string usualIn(const std::string& home) {
  return home.empty() ? "" : home + "/Library/Application Support";
}
std::string ofTheEnvironment() { return ""; }
}  // namespace DataFolders

namespace RequesterVariables {

Requester requesterNamedBy(const VariableLookup& variable) {
  const auto value = variable(kRequesters[0]);
  const auto uid = value ? uidFrom(*value) : std::nullopt;
  if (!value || uid == uid_t{0}) return {};
  auto account = uid ? accountWithUid(*uid) : std::nullopt;
  if (!account) return {.kind = Requester::Kind::Unknown};
  return {.kind = Requester::Kind::Somebody, .account = std::move(account)};
}

bool nameAnybody(const VariableLookup& variable) { return variable(kRequesters[0]).has_value(); }
std::span<const char* const> names() { return kRequesters; }
std::span<const char* const> namesOfFolders() { return kFolders; }

}  // namespace RequesterVariables

// Profiles of the sandbox are no public interface for tools.
namespace Confinement {
Answer keepToFiles() { return Answer::NotHere; }
Answer keepToTrees(const Trees&) { return Answer::NotHere; }
}  // namespace Confinement

}  // namespace halvorn
