// What a process says of itself.
#include <cstdlib>

#include "Core/Format.h"
#include "Core/Log.h"
#include "KTStuff/CocoaExtensions/StringExtensionsDigests.h"
#include "KTStuff/KTClasses/KTProcess.h"
#include "Platform/bundles/Bundles.h"
#include "Platform/bundles/ItemFacts.h"
#include "Platform/files/FileManager.h"
#include "Platform/running/Clock.h"
#include "Platform/running/Tasks.h"
#include "Platform/text/FourCharCodes.h"

namespace halvorn {
namespace {

constexpr char kProcessorTimeFile[] = "/tmp/proc_cpu_time.txt";
constexpr std::size_t kProcessorTimeFileLimit = 4096;
// What fits in front of a length byte.
constexpr std::size_t kLongestClassicName = 255;

Text nameFrom(const ProcessInformation& information) {
  if (const Text* text = std::get_if<Text>(&information.name)) return *text;
  return Text::fromMacRoman(
      std::string_view(std::get<MacRomanName>(information.name).bytes).substr(0, kLongestClassicName));
}

}  // namespace

bool KTProcess::getProcessInfo() const {
  {
    const std::lock_guard lock(mutex_);
    if (name_) return true;
  }
  const auto information = services().source.information(psn_);
  if (!information) return false;
  const std::lock_guard lock(mutex_);
  signature_ = information->signature;
  if (!name_) name_ = nameFrom(*information);
  return true;
}

OptionalText KTProcess::name() const {
  getProcessInfo();
  const std::lock_guard lock(mutex_);
  return name_;
}

OptionalText KTProcess::displayName() const {
  {
    const std::lock_guard lock(mutex_);
    if (displayName_) return displayName_;
  }
  OptionalText found = services().source.displayName(psn_);
  if (!found) found = name();
  const std::lock_guard lock(mutex_);
  if (!displayName_ && found) displayName_ = found;
  return displayName_;
}

FourCharCode KTProcess::signature() const {
  getProcessInfo();
  const std::lock_guard lock(mutex_);
  return signature_;
}

Text KTProcess::signatureString() const {
  return getProcessInfo() ? services().codes.textOf(signature()) : Text();
}

Text KTProcess::signatureHexString() const {
  const FourCharCode code = signature();
  return format("%02X%02X%02X%02X", code >> 24, code >> 16 & 0xFF, code >> 8 & 0xFF, code & 0xFF);
}

std::int32_t KTProcess::unixPID() const { return services().source.pid(psn_).value_or(0); }

std::optional<PropertyDictionary> KTProcess::infoDictionary() const {
  {
    const std::lock_guard lock(mutex_);
    if (infoDictionary_) return infoDictionary_;
  }
  auto found = services().source.informationDictionary(psn_);
  const std::lock_guard lock(mutex_);
  if (!infoDictionary_ && found) infoDictionary_ = std::move(found);
  return infoDictionary_;
}

Text KTProcess::identifier() const {
  return textForKey(infoDictionary().value_or(PropertyDictionary()), "CFBundleIdentifier").value_or(Text());
}

OptionalText KTProcess::path() const {
  {
    const std::lock_guard lock(mutex_);
    if (path_) return path_;
  }
  const OptionalText found = services().source.bundleLocation(psn_);
  const std::lock_guard lock(mutex_);
  if (!path_ && found) path_ = found;
  return path_;
}

OptionalText KTProcess::bundle() const {
  const OptionalText location = path();
  return location && services().files.isDirectory(*location) ? location : std::nullopt;
}

ImagePointer KTProcess::icon() const {
  {
    const std::lock_guard lock(mutex_);
    if (icon_) return icon_;
  }
  const OptionalText location = path();
  const ImagePointer found = location ? services().images.iconForFile(*location) : nullptr;
  const std::lock_guard lock(mutex_);
  if (!icon_) icon_ = found;
  return icon_;
}

bool KTProcess::isStillRunning() const { return services().source.pid(psn_).has_value(); }

bool KTProcess::isFrontProcess() const { return isEqual(processes_.frontProcess()); }

bool KTProcess::isBackgroundOnly() const {
  const PropertyDictionary dictionary = infoDictionary().value_or(PropertyDictionary());
  for (const char* key : {"LSBackgroundOnly", "LSUIElement"}) {
    const auto found = dictionary.find(key);
    if (found != dictionary.end() && found->second.isTrue()) return true;
  }
  return false;
}

bool KTProcess::isCocoa() const {
  {
    const std::lock_guard lock(mutex_);
    if (cocoaStatus_ != CocoaStatus::Unknown) return cocoaStatus_ == CocoaStatus::Cocoa;
  }
  const CocoaStatus status = readCocoaStatus();
  const std::lock_guard lock(mutex_);
  cocoaStatus_ = status;
  return status == CocoaStatus::Cocoa;
}

KTProcess::CocoaStatus KTProcess::readCocoaStatus() const {
  const OptionalText location = services().source.bundleLocation(psn_);
  if (!location) return CocoaStatus::Other;
  const auto flags = services().items.flags(*location);
  if (!flags || !flags->isPackage || !flags->isNativeApplication) return CocoaStatus::Other;
  const auto dictionary = services().bundles.infoDictionary(*location);
  const bool namesClass = dictionary && textForKey(*dictionary, "NSPrincipalClass");
  return namesClass ? CocoaStatus::Cocoa : CocoaStatus::Other;
}

Text KTProcess::platform() const {
  if (isCocoa()) return KTPlatformCocoa;
  return identifier().contains(".java") ? KTPlatformJava : KTPlatformCarbon;
}

Date KTProcess::launchDate() const {
  {
    const std::lock_guard lock(mutex_);
    if (launchDate_) return *launchDate_;
  }
  Date date;
  if (unixPID() == 0) {
    services().log("*** Cannot get launch date for %@", name());
    date = services().clock.now();
  } else {
    date = services().source.startTime(psn_).value_or(Date{});
  }
  const std::lock_guard lock(mutex_);
  if (!launchDate_) launchDate_ = date;
  return *launchDate_;
}

float KTProcess::secondsRunning() const {
  const double launched = launchDate().secondsSince1970;
  return static_cast<float>(services().clock.now().secondsSince1970 - launched);
}

double KTProcess::cpuTime() const {
  const auto pid = services().source.pid(psn_);
  if (!pid) return 0.0;
  const Text command = format(services().source.processorTimeCommand(), *pid, Text(kProcessorTimeFile));
  (void)services().tasks.standardOutputOf("/bin/sh", {"-c", command});
  // What was read by its id is about this process only if it had the id all the time.
  if (!isStillRunning()) return 0.0;
  const auto bytes = services().files.readFile(kProcessorTimeFile, kProcessorTimeFileLimit);
  const auto text = bytes ? Text::fromStrictUtf8(*bytes) : std::nullopt;
  if (!text) return 0.0;
  const std::size_t colon = text->find(u':');
  if (colon == Text::npos) return 0.0;
  const int minutes = text->substring(0, colon).intValue();
  const float seconds = text->substring(colon + 1).floatValue();
  return static_cast<double>(minutes) * 60 + static_cast<double>(seconds);
}

Text KTProcess::hashStringSource() const {
  if (const Text bundleIdentifier = identifier(); !bundleIdentifier.isEmpty()) {
    return Text("id:") + bundleIdentifier;
  }
  if (const Text code = signatureString(); !code.isEmpty() && code != Text("????"))
    return Text("sig:") + code;
  return Text("name:") + name().value_or(Text());
}

Text KTProcess::hashString() const {
  return StringExtensions::MD5String(hashStringSource(), services().digests);
}

std::any KTProcess::infoForKey(const Text& key) const {
  const std::lock_guard lock(mutex_);
  if (!customInfo_) return {};
  const auto found = customInfo_->find(key);
  return found == customInfo_->end() ? std::any() : found->second;
}

void KTProcess::setInfo(std::any object, const Text& forKey) {
  std::any replaced;  // destroyed without the lock
  const std::lock_guard lock(mutex_);
  if (!customInfo_) customInfo_.emplace();
  replaced = std::exchange((*customInfo_)[forKey], std::move(object));
  if (!(*customInfo_)[forKey].has_value()) customInfo_->erase(forKey);
}

}  // namespace halvorn
