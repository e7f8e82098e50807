// Activating a process, and sending it events.
#include "Core/Log.h"
#include "KTStuff/KTClasses/KTProcess.h"
#include "Platform/processes/AppleEvents.h"
#include "Platform/processes/ApplicationControl.h"

namespace halvorn {
namespace {

// Wait for the reply, never interact, don't reconnect, don't record, don't execute.
constexpr std::int32_t kWaitForReplyMode = 0x3093;
constexpr float kTicksPerSecond = 60;

// Float times out of range are as good as for ever, or as none at all.
std::int32_t ticks(float seconds) {
  const float result = seconds * kTicksPerSecond;
  if (!(result > -2147483648.0F)) return std::numeric_limits<std::int32_t>::min();
  if (result >= 2147483648.0F) return std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int32_t>(result);
}

}  // namespace

void KTProcess::sendQuitEvent() {
  AppleEvents& events = services().appleEvents;
  const Log& log = services().log;
  const auto address = events.addressOf(psn_);
  if (const int* status = std::get_if<int>(&address)) {
    log("quitting %@ failed (%d; could not create descriptor)", name(), *status);
    return;
  }
  const auto event = events.createEvent(kCoreEventClass, kQuitApplicationEvent,
                                        *std::get<std::unique_ptr<EventAddress>>(address));
  if (const int* status = std::get_if<int>(&event)) {
    log("quitting %@ failed (%d; could not create event)", name(), *status);
    return;
  }
  const int status = std::get<std::unique_ptr<AppleEvent>>(event)->send(
      {.mode = EventSending::kNoReply, .priority = EventSending::Priority::High});
  if (status != 0) log("quitting %@ failed (%d; could not send event)", name(), status);
}

void KTProcess::sendAppleEvent(FourCharCode eventClass, FourCharCode eventID, float timeout) {
  AppleEvents& events = services().appleEvents;
  const auto address = events.addressOf(psn_);
  const auto* to = std::get_if<std::unique_ptr<EventAddress>>(&address);
  if (to == nullptr) return;
  const auto built = events.createEvent(eventClass, eventID, **to);
  const auto* event = std::get_if<std::unique_ptr<AppleEvent>>(&built);
  if (event == nullptr) return;
  const int status = (*event)->send({.mode = kWaitForReplyMode, .timeoutTicks = ticks(timeout)});
  if (status != 0) services().log("*** event error: %d", status);
}

void KTProcess::wakeUp() { services().control.wakeUp(psn_); }

void KTProcess::setHidden(bool hidden) {
  services().control.setVisible(psn_, hidden ? Visible::No : Visible::Yes);
}

std::optional<bool> KTProcess::isHidden() const { return services().control.isHidden(psn_); }

void KTProcess::setFrontProcess() { services().control.setFront(psn_, BringForward::AllWindows); }

void KTProcess::setFrontProcessFrontWindowOnly() {
  services().control.setFront(psn_, BringForward::FrontWindowOnly);
}

void KTProcess::temporarilySwitchOut() {
  if (const auto current = processes_.currentProcess()) current->setFrontProcess();
  setFrontProcessFrontWindowOnly();
  wakeUp();
}

}  // namespace halvorn
