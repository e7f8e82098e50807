#include <algorithm>
#include <charconv>
#include <string_view>
#include <utility>

#include "Platform/rights/posix/Requester.h"

namespace halvorn::RequesterVariables {
namespace {

constexpr const char* kRequesters[] = {"PKEXEC_UID", "SUDO_UID"};
constexpr const char* kFolders[] = {"HOME", "XDG_DATA_HOME"};

std::optional<uid_t> uidFrom(std::string_view text) {
  uid_t uid = 0;
  const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), uid);
  const bool isNumber = error == std::errc() && stop == text.data() + text.size();
  return isNumber ? std::optional(uid) : std::nullopt;
}

}  // namespace

Requester requesterNamedBy(const VariableLookup& variable) {
  for (const char* const name : kRequesters) {
    const auto value = variable(name);
    if (!value) continue;
    const auto uid = uidFrom(*value);
    // One tool that hands rights out may have been started by another.
    if (uid == uid_t{0}) continue;
    auto account = uid ? accountWithUid(*uid) : std::nullopt;
    if (!account) return {.kind = Requester::Kind::Unknown};
    return {.kind = Requester::Kind::Somebody, .account = std::move(account)};
  }
  return {};
}

bool nameAnybody(const VariableLookup& variable) {
  return std::any_of(std::begin(kRequesters), std::end(kRequesters),
                     [&](const char* name) { return variable(name).has_value(); });
}

std::span<const char* const> names() { return kRequesters; }
std::span<const char* const> namesOfFolders() { return kFolders; }

}  // namespace halvorn::RequesterVariables
