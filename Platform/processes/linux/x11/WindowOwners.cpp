#include "Platform/processes/linux/x11/WindowOwners.h"

#include <signal.h>
#include <unistd.h>
#include <xcb/res.h>

#include <algorithm>
#include <cerrno>
#include <limits>

#include "Platform/processes/linux/proc/ProcFiles.h"

namespace halvorn {
namespace {

constexpr std::uint32_t kMachineLimit = 64;  // in units of four bytes

std::string hostName() {
  char name[256] = {};
  return ::gethostname(name, sizeof name - 1) == 0 ? name : "";
}

// "web1.example.com" is "web1" to its neighbours.
std::string_view shortName(std::string_view machine) { return machine.substr(0, machine.find('.')); }

bool isGone(pid_t pid) { return ::kill(pid, 0) != 0 && errno == ESRCH; }

bool contains(const std::vector<pid_t>& pids, pid_t pid) {
  return std::find(pids.begin(), pids.end(), pid) != pids.end();
}

}  // namespace

std::optional<pid_t> ownerFrom(const OwnerEvidence& evidence, const std::string& thisMachine) {
  if (evidence.machine && shortName(*evidence.machine) != shortName(thisMachine)) return std::nullopt;
  if (evidence.connected && evidence.claimed) {
    const bool agrees = *evidence.claimed == *evidence.connected ||
                        contains(evidence.connectedNamespacePids, *evidence.claimed);
    return agrees ? evidence.connected : std::nullopt;
  }
  // A single witness needs the machine as the second one.
  if (!evidence.machine) return std::nullopt;
  return evidence.connected ? evidence.connected : evidence.claimed;
}

WindowOwners::WindowOwners(WindowManagerConnection& connection, const ProcFiles& files)
    : connection_(connection), files_(files), thisMachine_(hostName()) {}

std::vector<std::optional<pid_t>> WindowOwners::of(const std::vector<xcb_window_t>& windows) {
  const std::lock_guard lock(mutex_);
  std::erase_if(known_, [&](const auto& entry) {
    // The server gives the windows of a client that is gone to the next one.
    return std::find(windows.begin(), windows.end(), entry.first) == windows.end() || isGone(entry.second);
  });
  std::vector<xcb_window_t> unknown;
  for (const xcb_window_t window : windows) {
    if (!known_.contains(window)) unknown.push_back(window);
  }
  if (!unknown.empty()) {
    const auto evidence = evidenceFor(unknown);
    for (std::size_t i = 0; i < unknown.size(); ++i) {
      if (const auto owner = ownerFrom(evidence[i], thisMachine_)) known_[unknown[i]] = *owner;
    }
  }
  std::vector<std::optional<pid_t>> owners;
  for (const xcb_window_t window : windows) {
    const auto found = known_.find(window);
    owners.push_back(found == known_.end() ? std::nullopt : std::optional(found->second));
  }
  return owners;
}

std::vector<OwnerEvidence> WindowOwners::evidenceFor(const std::vector<xcb_window_t>& windows) {
  xcb_connection_t* connection = connection_.get();
  std::vector<xcb_get_property_cookie_t> pidCookies;
  std::vector<xcb_get_property_cookie_t> machineCookies;
  for (const xcb_window_t window : windows) {
    pidCookies.push_back(
        xcb_get_property(connection, 0, window, connection_.ewmh()->_NET_WM_PID, XCB_ATOM_CARDINAL, 0, 1));
    machineCookies.push_back(xcb_get_property(connection, 0, window, XCB_ATOM_WM_CLIENT_MACHINE,
                                              XCB_GET_PROPERTY_TYPE_ANY, 0, kMachineLimit));
  }
  std::vector<OwnerEvidence> evidence(windows.size());
  for (std::size_t i = 0; i < windows.size(); ++i) {
    const auto pid = adopted(xcb_get_property_reply(connection, pidCookies[i], nullptr));
    if (pid && pid->format == 32 && xcb_get_property_value_length(pid.get()) >= 4) {
      const auto value = *static_cast<const std::uint32_t*>(xcb_get_property_value(pid.get()));
      // 0 and what no process can have is as good as nothing, and contradicts everything.
      const bool isPid = value <= static_cast<std::uint32_t>(std::numeric_limits<pid_t>::max());
      evidence[i].claimed = isPid ? static_cast<pid_t>(value) : 0;
    }
    const auto machine = adopted(xcb_get_property_reply(connection, machineCookies[i], nullptr));
    if (machine && machine->format == 8 && xcb_get_property_value_length(machine.get()) > 0) {
      evidence[i].machine =
          std::string(static_cast<const char*>(xcb_get_property_value(machine.get())),
                      static_cast<std::size_t>(xcb_get_property_value_length(machine.get())));
    }
  }
  if (connection_.tellsClientPids()) addConnectedPids(windows, evidence);
  return evidence;
}

void WindowOwners::addConnectedPids(const std::vector<xcb_window_t>& windows,
                                    std::vector<OwnerEvidence>& evidence) {
  xcb_connection_t* connection = connection_.get();
  std::vector<xcb_res_query_client_ids_cookie_t> cookies;
  for (const xcb_window_t window : windows) {
    const xcb_res_client_id_spec_t wanted{window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    cookies.push_back(xcb_res_query_client_ids(connection, 1, &wanted));
  }
  for (std::size_t i = 0; i < windows.size(); ++i) {
    const auto reply = adopted(xcb_res_query_client_ids_reply(connection, cookies[i], nullptr));
    if (!reply) continue;
    for (auto ids = xcb_res_query_client_ids_ids_iterator(reply.get()); ids.rem > 0;
         xcb_res_client_id_value_next(&ids)) {
      const bool isPid = (ids.data->spec.mask & XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID) != 0;
      if (!isPid || ids.data->length < 4) continue;
      evidence[i].connected = static_cast<pid_t>(*xcb_res_client_id_value_value(ids.data));
    }
    if (!evidence[i].connected) continue;
    if (const auto status = files_.status(*evidence[i].connected)) {
      evidence[i].connectedNamespacePids = status->namespacePids;
    }
  }
}

}  // namespace halvorn
