// What strace recorded of the administrator's tool, call by call.
#pragma once

#include <set>
#include <string>
#include <vector>

namespace halvorn {

struct Call {
  std::string name;
  std::string arguments;
  std::string answer = {};
  bool isThePersons = false;  // made with the file rights of whoever asked
};

// The calls in the order in which they ended, those that another thread interrupted put together again; what
// was closed counts from the beginning of the call. What cannot be read becomes a call "unreadable".
[[nodiscard]] std::vector<Call> callsIn(const std::string& record);

// The calls that take no name.
[[nodiscard]] const std::set<std::string>& namelessCalls();

}  // namespace halvorn
