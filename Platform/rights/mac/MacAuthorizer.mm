#include "Platform/rights/mac/MacAuthorizer.h"

#import <Security/Security.h>
#include <sys/wait.h>

#include <string>
#include <utility>

namespace halvorn {
namespace {

constexpr AuthorizationFlags kAsking =
    kAuthorizationFlagInteractionAllowed | kAuthorizationFlagExtendRights | kAuthorizationFlagPreAuthorize;

// Freed at the end; rights that the person gave stay with the session.
class Reference {
 public:
  Reference() = default;
  Reference(Reference&& other) noexcept : value_(std::exchange(other.value_, nullptr)) {}
  ~Reference() {
    if (value_ != nullptr) static_cast<void>(AuthorizationFree(value_, kAuthorizationFlagDefaults));
  }
  Reference(const Reference&) = delete;
  Reference& operator=(const Reference&) = delete;
  Reference& operator=(Reference&&) = delete;

  [[nodiscard]] bool create() {
    return AuthorizationCreate(nullptr, nullptr, kAuthorizationFlagDefaults, &value_) ==
           errAuthorizationSuccess;
  }
  [[nodiscard]] AuthorizationRef get() const { return value_; }

 private:
  AuthorizationRef value_ = nullptr;
};

class MacAuthorization : public Authorization {
 public:
  MacAuthorization(Reference reference, const Text& toolPath, const std::vector<Text>& arguments)
      : reference_(std::move(reference)), toolPath_(toolPath.bytes()) {
    for (const Text& argument : arguments) arguments_.push_back(argument.bytes());
  }

  // The tool's output is not read.
  void whenCopied(std::function<void(std::uint64_t)>) override {}
  [[nodiscard]] ToolEnd run() override {
    std::vector<char*> arguments;
    for (std::string& argument : arguments_) arguments.push_back(argument.data());
    arguments.push_back(nullptr);
    const OSStatus status = AuthorizationExecuteWithPrivileges(
        reference_.get(), toolPath_.c_str(), kAuthorizationFlagDefaults, arguments.data(), nullptr);
    if (status != errAuthorizationSuccess) return ToolNotStarted{static_cast<int>(status)};
    // The call does not tell which child the tool is.
    int end = 0;
    if (::wait(&end) == -1) return ToolUnknown{};
    if (WIFEXITED(end)) return ToolExited{WEXITSTATUS(end)};
    return ToolDied{WTERMSIG(end)};
  }

 private:
  Reference reference_;
  std::string toolPath_;
  std::vector<std::string> arguments_;
};

}  // namespace

Authorizer::Result MacAuthorizer::requestAdministratorRights(const Text& toolPath,
                                                             const std::vector<Text>& arguments) {
  if (isWithdrawn_) return {AuthorizationAnswer::Canceled, nullptr};
  Reference reference;
  if (!reference.create()) return {AuthorizationAnswer::Refused, nullptr};
  AuthorizationItem item = {"system.privilege.admin", 0, nullptr, 0};
  const AuthorizationRights rights = {1, &item};
  const OSStatus status = AuthorizationCopyRights(reference.get(), &rights, nullptr, kAsking, nullptr);
  if (isWithdrawn_ || status == errAuthorizationCanceled) return {AuthorizationAnswer::Canceled, nullptr};
  if (status != errAuthorizationSuccess) return {AuthorizationAnswer::Refused, nullptr};
  return {AuthorizationAnswer::Granted,
          std::make_unique<MacAuthorization>(std::move(reference), toolPath, arguments)};
}

}  // namespace halvorn
