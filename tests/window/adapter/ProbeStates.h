// The states a person meets the window in, in the words of its table, as the core sets them up.
#pragma once

#include <string>
#include <vector>

#include "Platform/bundles/LocalizedStrings.h"
#include "Platform/window/Alerts.h"
#include "Platform/window/Images.h"
#include "Platform/window/InstallerOutlets.h"

namespace halvorn {

class ProbeStates {
 public:
  // `documents`: the folder of the read-me documents.
  ProbeStates(InstallerOutlets outlets, const LocalizedStrings& strings, Images& images, Alerts& alerts,
              std::string documents)
      : outlets_(outlets),
        strings_(strings),
        images_(images),
        alerts_(alerts),
        documents_(std::move(documents)) {}

  [[nodiscard]] static const std::vector<std::string>& names();
  // False for a name that is none of them.
  bool show(const std::string& name);

 private:
  void showInstall(const Text& product, const Text& version, const Text& path, bool withHelp);
  void showReadMe(const char* document);
  void showMessage(const char* key);
  void showAlert();
  [[nodiscard]] Text localized(const char* key) const { return strings_.localized(key); }
  void showButtons(const char* install, const char* cancel);

  InstallerOutlets outlets_;
  const LocalizedStrings& strings_;
  Images& images_;
  Alerts& alerts_;
  std::string documents_;
};

}  // namespace halvorn
