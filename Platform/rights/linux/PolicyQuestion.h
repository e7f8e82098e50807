// What the system's policy says about this process running programs as administrator, asked without a dialog.
#pragma once

#include <string>

namespace halvorn {

enum class PolicyAnswer { Refuses, AsksForPassword, Unknown };

// For the log alone: rules may decide otherwise for one program than for programs
// in general. Takes seconds at most.
[[nodiscard]] PolicyAnswer askPolicy(const std::string& pkcheckPath);

}  // namespace halvorn
