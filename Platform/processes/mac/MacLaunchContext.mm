#include "Platform/processes/mac/MacLaunchContext.h"

#include <cstring>

#include "Platform/processes/mac/SerialNumbers.h"
#include "Platform/running/mac/Conversions.h"
#include "Platform/running/mac/Held.h"

namespace halvorn {

std::optional<PropertyDictionary> MacLaunchContext::launcherInformation() const {
  return answered(std::optional<PropertyDictionary>(), []() -> std::optional<PropertyDictionary> {
    ::ProcessSerialNumber current = {0, kNoProcess};
    ProcessInfoRec record;
    std::memset(&record, 0, sizeof(record));
    record.processInfoLength = sizeof(record);
    if (GetCurrentProcess(&current) != noErr) return std::nullopt;
    if (GetProcessInformation(&current, &record) != noErr) return std::nullopt;
    const Held<CFDictionaryRef> copy(ProcessInformationCopyDictionary(
        &record.processLauncher, kProcessDictionaryIncludeAllInformationMask));
    return dictionaryOf((NSDictionary*)copy.get());
  });
}

}  // namespace halvorn
