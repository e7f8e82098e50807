// The menu bar of an X desktop, which counts as hidden while the active window is a full-screen one.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "Core/TaskGate.h"
#include "Platform/MainThread.h"
#include "Platform/MenuBar.h"
#include "Platform/Workers.h"

namespace halvorn {

class X11MenuBar : public MenuBar {
 public:
  // The display is watched on a worker from the installation of the handler on.
  X11MenuBar(const std::optional<std::string>& displayName, Workers& workers, MainThread& mainThread);
  ~X11MenuBar() override;

  bool installHandler(Handler handler) override;

 private:
  class Watch;

  const std::optional<std::string> displayName_;
  Workers& workers_;
  MainThread& mainThread_;
  std::shared_ptr<Handler> handler_;
  std::unique_ptr<Watch> watch_;
  TaskGate gate_;
};

}  // namespace halvorn
