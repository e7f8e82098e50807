// How an installation ended.
#pragma once

#include <optional>

#include "Core/Text.h"

namespace halvorn {

// What a failed installation failed at.
enum class InstallFailure { RefusedToQuit, NotTrashed, NotCopied, NotCopiedWithRights };

class InstallOutcome {
 public:
  enum class Kind { Installed, Canceled, Failed };

  [[nodiscard]] static InstallOutcome installed() { return {Kind::Installed, std::nullopt, Text()}; }
  // The person dismissed the request for administrator rights. Not a failure: nothing is to be said.
  [[nodiscard]] static InstallOutcome canceled() { return {Kind::Canceled, std::nullopt, Text()}; }
  // `message` is localized and complete; its lines are separated by carriage returns.
  [[nodiscard]] static InstallOutcome failed(InstallFailure failure, const Text& message,
                                             const OptionalText& reason = std::nullopt) {
    InstallOutcome outcome(Kind::Failed, failure, message);
    outcome.reason_ = reason;
    return outcome;
  }

  [[nodiscard]] Kind kind() const { return kind_; }
  [[nodiscard]] std::optional<InstallFailure> failure() const { return failure_; }  // when failed
  [[nodiscard]] const Text& message() const { return message_; }                    // "" unless failed

  // Why, in the words of the log; nullopt when nothing is known beyond the message.
  [[nodiscard]] const OptionalText& reason() const { return reason_; }

  friend bool operator==(const InstallOutcome&, const InstallOutcome&) = default;

 private:
  InstallOutcome(Kind kind, std::optional<InstallFailure> failure, const Text& message)
      : kind_(kind), failure_(failure), message_(message) {}
  Kind kind_;
  std::optional<InstallFailure> failure_;
  Text message_;
  OptionalText reason_ = std::nullopt;
};

}  // namespace halvorn
