// The windows of KWin, told by a script that runs in it.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Platform/session/linux/bus/KWinScripting.h"
#include "Platform/session/linux/wayland/ToplevelList.h"

namespace halvorn {

class KWinToplevels : public ToplevelList {
 public:
  // Null where the script does not come to run in time.
  [[nodiscard]] static std::unique_ptr<KWinToplevels> over(std::unique_ptr<KWinScripting> scripting);

  std::optional<std::vector<Toplevel>> windows() override;
  std::vector<Toplevel> knownWindows() const override;
  void close(std::uint64_t number) override;
  void activate(std::uint64_t number) override;
  void setMinimized(std::uint64_t number, bool isMinimized) override;
  int descriptor() const override { return scripting_->descriptor(); }
  bool isUsable() const override { return scripting_->isUsable(); }
  Changes readChanges() override;

 private:
  explicit KWinToplevels(std::unique_ptr<KWinScripting> scripting) : scripting_(std::move(scripting)) {}
  void take(const std::string& told);
  [[nodiscard]] std::vector<Toplevel> parsed(const std::string& told);
  // With the window as `window`.
  void run(std::uint64_t number, const std::string& statement);

  const std::unique_ptr<KWinScripting> scripting_;
  std::map<std::string, std::uint64_t> numbers_;  // by KWin's own names of the windows that are there
  std::uint64_t lastNumber_ = 0;
  std::vector<Toplevel> windows_;
  Changes changes_;
};

}  // namespace halvorn
