#include "Platform/processes/mac/MacProcessSource.h"

#include <sys/sysctl.h>

#include <cstring>

#include "Platform/processes/mac/SerialNumbers.h"
#include "Platform/running/mac/Conversions.h"
#include "Platform/running/mac/Held.h"

namespace halvorn {
namespace {

// Paths have an end, also where nobody says which.
constexpr UInt32 kLongestPath = 16 * 1024;

std::optional<ProcessSerialNumber> numberWhen(OSStatus status, const ::ProcessSerialNumber& number) {
  return status == noErr ? std::optional(numberOf(number)) : std::nullopt;
}

}  // namespace

std::vector<ProcessSerialNumber> MacProcessSource::runningProcesses() {
  std::vector<ProcessSerialNumber> numbers;
  ::ProcessSerialNumber number = {0, kNoProcess};
  while (GetNextProcess(&number) == noErr) numbers.push_back(numberOf(number));
  return numbers;
}

std::optional<ProcessSerialNumber> MacProcessSource::processForPID(std::int32_t pid) {
  ::ProcessSerialNumber number = {0, kNoProcess};
  return numberWhen(GetProcessForPID(pid, &number), number);
}

std::optional<ProcessSerialNumber> MacProcessSource::currentProcess() {
  ::ProcessSerialNumber number = {0, kNoProcess};
  return numberWhen(GetCurrentProcess(&number), number);
}

std::optional<ProcessSerialNumber> MacProcessSource::frontProcess() {
  ::ProcessSerialNumber number = {0, kNoProcess};
  return numberWhen(GetFrontProcess(&number), number);
}

bool MacProcessSource::sameProcess(ProcessSerialNumber a, ProcessSerialNumber b) {
  const ::ProcessSerialNumber first = systemNumber(a);
  const ::ProcessSerialNumber second = systemNumber(b);
  Boolean same = 0;
  return SameProcess(&first, &second, &same) == noErr && same != 0;
}

std::optional<std::int32_t> MacProcessSource::pid(ProcessSerialNumber number) {
  const ::ProcessSerialNumber asked = systemNumber(number);
  pid_t found = 0;
  return GetProcessPID(&asked, &found) == noErr ? std::optional<std::int32_t>(found) : std::nullopt;
}

std::optional<ProcessInformation> MacProcessSource::information(ProcessSerialNumber number) {
  const ::ProcessSerialNumber asked = systemNumber(number);
  unsigned char name[256] = {};
  ProcessInfoRec record;
  std::memset(&record, 0, sizeof(record));
  record.processInfoLength = sizeof(record);
  record.processName = name;
  if (GetProcessInformation(&asked, &record) != noErr) return std::nullopt;
  return ProcessInformation{MacRomanName{std::string(reinterpret_cast<const char*>(name + 1), name[0])},
                            record.processSignature};
}

OptionalText MacProcessSource::displayName(ProcessSerialNumber number) {
  return answered(OptionalText(), [&]() -> OptionalText {
    const ::ProcessSerialNumber asked = systemNumber(number);
    Held<CFStringRef> name;
    if (CopyProcessName(&asked, name.out()) != noErr) return std::nullopt;
    return textOf((NSString*)name.get());
  });
}

std::optional<PropertyDictionary> MacProcessSource::informationDictionary(ProcessSerialNumber number) {
  return answered(std::optional<PropertyDictionary>(), [&] {
    const ::ProcessSerialNumber asked = systemNumber(number);
    const Held<CFDictionaryRef> copy(
        ProcessInformationCopyDictionary(&asked, kProcessDictionaryIncludeAllInformationMask));
    return dictionaryOf((NSDictionary*)copy.get());
  });
}

OptionalText MacProcessSource::bundleLocation(ProcessSerialNumber number) {
  const ::ProcessSerialNumber asked = systemNumber(number);
  FSRef location;
  std::string path(kLongestPath, '\0');
  if (GetProcessBundleLocation(&asked, &location) != noErr) return std::nullopt;
  if (FSRefMakePath(&location, reinterpret_cast<UInt8*>(path.data()), kLongestPath) != noErr)
    return std::nullopt;
  return Text(path.c_str());
}

std::optional<Date> MacProcessSource::startTime(ProcessSerialNumber number) {
  const auto asked = pid(number);
  if (!asked) return std::nullopt;
  int name[] = {CTL_KERN, KERN_PROC, KERN_PROC_PID, *asked};
  struct kinfo_proc record;
  std::memset(&record, 0, sizeof(record));
  std::size_t size = sizeof(record);
  if (sysctl(name, 4, &record, &size, nullptr, 0) != 0 || size == 0) return std::nullopt;
  const timeval start = record.kp_proc.p_starttime;
  return Date{static_cast<double>(start.tv_sec) + static_cast<double>(start.tv_usec) * 0.000001};
}

Text MacProcessSource::processorTimeCommand() const { return "ps -o utime= -p %1$d > %2$@"; }

}  // namespace halvorn
