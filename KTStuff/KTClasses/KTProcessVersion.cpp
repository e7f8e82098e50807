// Which version of its program a process runs.
#include <algorithm>
#include <vector>

#include "Core/Format.h"
#include "KTStuff/KTClasses/KTProcess.h"
#include "Platform/bundles/Bundles.h"
#include "Platform/bundles/ItemFacts.h"

namespace halvorn {
namespace {

constexpr FourCharCode kVersionResourceType = fourCharCode("vers");
constexpr std::int16_t kVersionResourceId = 1;
constexpr char kUnknownVersion[] = "1.0";

const char* stageLetter(unsigned char stage) {
  switch (stage) {
    case 0x20:
      return "d";
    case 0x40:
      return "a";
    case 0x60:
      return "b";
    default:
      return "";
  }
}

}  // namespace

Text KTProcess::version() const {
  {
    const std::lock_guard lock(mutex_);
    if (version_) return *version_;
  }
  const Text found = readVersion();
  const std::lock_guard lock(mutex_);
  if (!version_) version_ = found;
  return *version_;
}

Text KTProcess::readVersion() const {
  if (!getProcessInfo() || !path()) return kUnknownVersion;
  const OptionalText bundlePath = bundle();
  if (!bundlePath) return carbonVersion().value_or(kUnknownVersion);
  const auto dictionary = services().bundles.infoDictionary(*bundlePath);
  if (!dictionary) return kUnknownVersion;
  // KEEP: a short version without a dot ("5") gives way to the build version.
  const OptionalText shortVersion = textForKey(*dictionary, "CFBundleShortVersionString");
  if (shortVersion && shortVersion->contains(".")) return *shortVersion;
  return textForKey(*dictionary, "CFBundleVersion").value_or(kUnknownVersion);
}

OptionalText KTProcess::carbonVersion() const {
  const OptionalText location = services().source.bundleLocation(psn_);
  if (!location) return std::nullopt;
  const auto resource = services().items.resource(*location, kVersionResourceType, kVersionResourceId);
  if (!resource || resource->size() < 4) return std::nullopt;
  // KEEP: the record is read in the field order of a little-endian memory, although resources are
  // stored the other way round: byte 3 holds the major number, byte 2 minor and bugfix, byte 1 the
  // stage, byte 0 the pre-release revision.
  const auto byte = [&](std::size_t index) { return static_cast<unsigned char>((*resource)[index]); };
  const int major = (byte(3) >> 4) * 10 + (byte(3) & 0xF);
  const int minor = byte(2) >> 4;
  const int bugfix = byte(2) & 0xF;
  const int revision = byte(0);
  Text version = bugfix != 0 ? format("%d.%d.%d", major, minor, bugfix) : format("%d.%d", major, minor);
  if (revision != 0) version = format("%@%@%d", version, stageLetter(byte(1)), revision);
  return version;
}

int KTProcess::majorVersionNumber() const { return version().intValue(); }

bool KTProcess::isAtLeastVersion(const Text& version) const {
  const std::vector<Text> own = this->version().split(u'.');
  const std::vector<Text> given = version.split(u'.');
  const auto number = [](const std::vector<Text>& components, std::size_t index) {
    return index < components.size() ? components[index].intValue() : 0;
  };
  for (std::size_t i = 0; i < std::max(own.size(), given.size()); ++i) {
    if (number(own, i) != number(given, i)) return number(own, i) > number(given, i);
  }
  return true;
}

}  // namespace halvorn
