// Alerts that hang on a window.
#pragma once

#include <functional>
#include <vector>

#include "Core/Text.h"
#include "Platform/window/Images.h"

namespace halvorn {

struct AlertDescription {                                 // what an alert says
  enum class Style { Warning, Informational, Critical };  // how bad it is

  Style style = Style::Warning;    // a warning, unless it is said
  Text messageText;                // the sentence in bold
  Text informativeText;            // what follows it
  std::vector<Text> buttonTitles;  // the first is the default button
  ImagePointer icon;               // null: the platform's own
};

// Return codes count the buttons in their order.
inline constexpr int kAlertFirstButtonReturn = 1000;
inline constexpr int kAlertSecondButtonReturn = 1001;

class Alerts {
 public:
  virtual ~Alerts() = default;
  // Shows the alert as a sheet on the installer window and returns at once; `ended` is called once with the
  // return code. Closing the sheet in any other way counts as the first button. Thread: main.
  virtual void beginSheet(const AlertDescription& alert, std::function<void(int returnCode)> ended) = 0;
};

}  // namespace halvorn
