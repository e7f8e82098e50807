// Installing as one would write it in an afternoon: by path, with the administrator's rights for everything.
// It is here to be harmed: an attack that does not harm it proves nothing about the real tool.
#pragma once

#include <string>

namespace halvorn::NaiveInstall {

bool copyItem(const std::string& from, const std::string& to);
bool removeItem(const std::string& path);
// The real tool's arguments and statuses; "" for no wrapper.
int install(const std::string& source, const std::string& destination, const std::string& wrapper);

}  // namespace halvorn::NaiveInstall
