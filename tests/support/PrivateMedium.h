// A medium that a person has mounted (FUSE) and that nobody else may look into, not even the administrator.
#pragma once

#include <sys/types.h>

#include <map>
#include <optional>
#include <string>

namespace halvorn {

class PrivateMedium {
 public:
  // Why there can be none here; nullopt when there can.
  [[nodiscard]] static std::optional<std::string> missing();

  // Serves read-only files ("Nas.app/Contents/Info.plist" -> bytes, everything executable, folders made as
  // needed) at the existing folder. Throws std::runtime_error.
  PrivateMedium(const std::string& folder, uid_t person, const std::map<std::string, std::string>& files);
  ~PrivateMedium();
  PrivateMedium(const PrivateMedium&) = delete;
  PrivateMedium& operator=(const PrivateMedium&) = delete;

 private:
  std::string folder_;
  pid_t server_ = -1;
};

}  // namespace halvorn
