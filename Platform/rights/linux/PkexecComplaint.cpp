#include "Platform/rights/linux/PkexecComplaint.h"

#include <array>

namespace halvorn {
namespace {

struct Sign {
  std::string_view text;
  PkexecComplaint meaning;
};

// The first that stands in the text counts.
constexpr std::array<Sign, 12> kSigns{{
    {"No authentication agent found", PkexecComplaint::NoAgent},
    {"must be setuid root", PkexecComplaint::NotPrivileged},
    {"Error accessing ", PkexecComplaint::ToolUnreachable},
    {"Cannot run program ", PkexecComplaint::ToolUnreachable},
    {"Error executing command as another user: Not authorized", PkexecComplaint::NotAuthorized},
    {"Error executing /", PkexecComplaint::ToolUnstartable},
    // The bus answers for a daemon that it cannot find or start.
    {"was not provided by any .service files", PkexecComplaint::NoPolicyDaemon},
    {"GDBus.Error:org.freedesktop.DBus.Error.", PkexecComplaint::NoPolicyDaemon},
    {"StartServiceByName", PkexecComplaint::NoPolicyDaemon},
    {"Error checking for authorization", PkexecComplaint::NoPolicyDaemon},
    {"Could not connect", PkexecComplaint::NoSystemBus},
    {"Error getting authority", PkexecComplaint::NoSystemBus},
}};

}  // namespace

PkexecComplaint complaintFrom(std::string_view text) {
  for (const Sign& sign : kSigns) {
    if (text.find(sign.text) != std::string_view::npos) return sign.meaning;
  }
  return PkexecComplaint::Unknown;
}

}  // namespace halvorn
