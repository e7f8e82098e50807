#include "KTStuff/KTClasses/KTProcess.h"

#include "Core/Format.h"
#include "Platform/text/Unicode.h"

namespace halvorn {

KTProcessPointer KTProcess::create(KTProcessClass& processes, ProcessSerialNumber serialNumber) {
  processes.installNotifications();
  return std::make_shared<KTProcess>(Key{}, processes, serialNumber);
}

KTProcess::KTProcess(Key, KTProcessClass& processes, ProcessSerialNumber serialNumber)
    : processes_(processes), psn_(serialNumber) {}

KTProcess::~KTProcess() { unregisterAXNotifications(); }

const KTProcessServices& KTProcess::services() const { return processes_.services(); }

void KTProcess::addToCache() { processes_.insertAtFront(shared_from_this()); }

bool KTProcess::isSameProcess(ProcessSerialNumber serialNumber) const {
  return services().source.sameProcess(psn_, serialNumber);
}

bool KTProcess::isEqual(const KTProcess& other) const {
  return this == &other || isSameProcess(other.serialNumber());
}

bool KTProcess::isEqual(const std::shared_ptr<KTProcess>& other) const { return other && isEqual(*other); }

bool KTProcess::isEqual(const std::any& object) const {
  const auto* other = std::any_cast<KTProcessPointer>(&object);
  return other != nullptr && isEqual(*other);
}

Ordering KTProcess::compare(const KTProcess& other) const {
  return services().unicode.compareCaseInsensitive(name().value_or(Text()), other.name().value_or(Text()));
}

Text KTProcess::description() const {
  return format("Process \"%@\" (%@) %@", name(), signatureString(), version());
}

}  // namespace halvorn
