// The environment of this process, replaced for as long as the object lives: a system object reads it as programs do.
#pragma once

#include <unistd.h>

#include <cstdlib>
#include <string>
#include <vector>

namespace halvorn {

class EnvironmentOfTest {
 public:
  explicit EnvironmentOfTest(const std::vector<std::string>& entries) {
    for (char** entry = ::environ; *entry != nullptr; ++entry) before_.emplace_back(*entry);
    use(entries);
  }
  ~EnvironmentOfTest() { use(before_); }
  EnvironmentOfTest(const EnvironmentOfTest&) = delete;
  EnvironmentOfTest& operator=(const EnvironmentOfTest&) = delete;

 private:
  static void use(const std::vector<std::string>& entries) {
    ::clearenv();
    for (const std::string& entry : entries) {
      const std::size_t equals = entry.find('=');
      ::setenv(entry.substr(0, equals).c_str(), entry.substr(equals + 1).c_str(), 1);
    }
  }

  std::vector<std::string> before_;
};

}  // namespace halvorn
