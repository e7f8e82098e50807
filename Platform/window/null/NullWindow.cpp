#include "Platform/window/null/NullWindow.h"

#include <utility>

namespace halvorn {

void NullApplication::performWhenShown(std::function<void()> task) { mainThread_.perform(std::move(task)); }

void NullAlerts::beginSheet(const AlertDescription& /*alert*/, std::function<void(int returnCode)> ended) {
  if (ended) mainThread_.perform([answered = std::move(ended)] { answered(kAlertFirstButtonReturn); });
}

InstallerOutlets NullInstallerWindow::outlets() {
  return {.window = window_,
          .tabView = tabView_,
          .nameField = field_,
          .introField = field_,
          .pathField = field_,
          .explanationField = field_,
          .messageField = field_,
          .iconField = image_,
          .checkmarkField = image_,
          .readMeTextView = text_,
          .installButton = button_,
          .cancelButton = button_,
          .helpButton = button_,
          .progressIndicator = progress_};
}

}  // namespace halvorn
