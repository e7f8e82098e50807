// The environment variables a program was started with, taken once so that nothing here asks for them later.
#pragma once

#include <map>
#include <optional>
#include <string>

namespace halvorn {

class Environment {
 public:
  using Variables = std::map<std::string, std::string>;

  Environment() = default;
  explicit Environment(Variables variables) : variables_(std::move(variables)) {}
  [[nodiscard]] static Environment ofThisProcess();

  // nullopt when the variable is missing or empty, which mean the same to the desktop's rules.
  [[nodiscard]] std::optional<std::string> value(const std::string& name) const;
  [[nodiscard]] const Variables& variables() const { return variables_; }

 private:
  Variables variables_;
};

}  // namespace halvorn
