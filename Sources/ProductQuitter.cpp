#include "Sources/ProductQuitter.h"

#include <algorithm>

#include "Core/Log.h"
#include "KTStuff/KTClasses/KTInstallerInterface.h"
#include "KTStuff/KTClasses/KTProcess.h"
#include "Platform/running/Clock.h"
#include "Platform/text/FourCharCodes.h"

namespace halvorn {
namespace {

constexpr double kPauseBetweenProcesses = 0.1;

}  // namespace

bool signatureIsInArray(FourCharCode signature, const std::vector<Text>* codes, const FourCharCodes& system) {
  if (codes == nullptr || signature == kUndeclaredSignature) return false;
  return std::any_of(codes->begin(), codes->end(),
                     [&](const Text& code) { return system.codeOf(code) == signature; });
}

ProductQuitter::ProductQuitter(KTProcessClass& processes, const ArgumentDictionary& arguments,
                               const Cancellation& cancellation, Clock& clock, const Log& log)
    : processes_(processes), arguments_(arguments), cancellation_(cancellation), clock_(clock), log_(log) {}

void ProductQuitter::walkTargets(const std::function<Walk(KTProcess&)>& visit) const {
  const std::vector<Text>* quitCodes = arguments_.list(KTInstallerKeyQuitCode);
  if (quitCodes == nullptr || quitCodes->empty()) return;
  const FourCharCodes& system = processes_.services().codes;
  const KTProcessPointer self = processes_.currentProcess();
  for (const KTProcessPointer& process : processes_.allProcesses()) {
    if (!signatureIsInArray(process->signature(), quitCodes, system) || process->isEqual(self)) continue;
    if (visit(*process) == Walk::Stop) return;
  }
}

OptionalText ProductQuitter::processToQuitStillRunning() const {
  OptionalText result;
  walkTargets([&](KTProcess& process) {
    log_("Still running '%@': %@", process.signatureString(), process.name());
    result = process.name();
    return Walk::Stop;
  });
  return result;
}

std::vector<KTProcessPointer> ProductQuitter::targets() const {
  std::vector<KTProcessPointer> found;
  walkTargets([&](KTProcess& process) {
    found.push_back(process.shared_from_this());
    return Walk::Continue;
  });
  return found;
}

void ProductQuitter::quitProcesses() const {
  walkTargets([&](KTProcess& process) {
    if (cancellation_.isRequested()) return Walk::Stop;
    log_("Quitting '%@': %@", process.signatureString(), process.name());
    process.quit(cancellation_);
    clock_.sleep(kPauseBetweenProcesses);
    return Walk::Continue;
  });
}

}  // namespace halvorn
