// Notices by the desktop's notification service.
#pragma once

#include <memory>

#include "Core/Text.h"
#include "Platform/window/Notices.h"

namespace halvorn {

class BusNotices : public Notices {
 public:
  // The name is the program's as people know it. Nothing is asked of the bus before a notice is shown. A QtApplication
  // must exist by then.
  explicit BusNotices(const Text& programName);
  // Withdraws: nobody would be there for what is pressed.
  ~BusNotices() override;
  BusNotices(const BusNotices&) = delete;
  BusNotices& operator=(const BusNotices&) = delete;

  void show(const Notice& notice) override;
  void withdraw() override;

 private:
  struct Service;
  const Text programName_;
  std::unique_ptr<Service> service_;  // made with the first notice
};

}  // namespace halvorn
