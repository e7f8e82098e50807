// How an installation ended.
#pragma once

#include <utility>

#include "Core/Text.h"

namespace halvorn {

class InstallOutcome {
 public:
  enum class Kind { Installed, Canceled, Failed };

  [[nodiscard]] static InstallOutcome installed() { return {Kind::Installed, Text()}; }
  // The person dismissed the request for administrator rights. Not a failure: nothing is to be said.
  [[nodiscard]] static InstallOutcome canceled() { return {Kind::Canceled, Text()}; }
  // `message` is localized and complete; its lines are separated by carriage returns.
  [[nodiscard]] static InstallOutcome failed(const Text& message) { return {Kind::Failed, message}; }

  [[nodiscard]] Kind kind() const { return kind_; }
  [[nodiscard]] const Text& message() const { return message_; }  // "" unless failed

  friend bool operator==(const InstallOutcome&, const InstallOutcome&) = default;

 private:
  InstallOutcome(Kind kind, const Text& message) : kind_(kind), message_(message) {}
  Kind kind_;
  Text message_;
};

}  // namespace halvorn
