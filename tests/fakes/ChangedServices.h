// The services of a process class with some of them exchanged.
//
//   KTProcessClass processes(changedServices(fake.processes.services(), {.images = &images}));
#pragma once

#include "KTStuff/KTClasses/KTProcessClass.h"

namespace halvorn {

// Null: as it was.
struct ServiceChanges {
  ApplicationControl* control = nullptr;
  AppleEvents* appleEvents = nullptr;
  Images* images = nullptr;
};

inline KTProcessServices changedServices(const KTProcessServices& services, const ServiceChanges& changes) {
  return {.source = services.source,
          .events = services.events,
          .control = changes.control != nullptr ? *changes.control : services.control,
          .appleEvents = changes.appleEvents != nullptr ? *changes.appleEvents : services.appleEvents,
          .accessibility = services.accessibility,
          .notifications = services.notifications,
          .bundles = services.bundles,
          .items = services.items,
          .files = services.files,
          .images = changes.images != nullptr ? *changes.images : services.images,
          .tasks = services.tasks,
          .unicode = services.unicode,
          .digests = services.digests,
          .codes = services.codes,
          .clock = services.clock,
          .log = services.log};
}

}  // namespace halvorn
