#include "Sources/WindowColors.h"

#include "KTStuff/KTClasses/KTDynamicColorClass.h"
#include "KTStuff/KTClasses/PlainColor.h"

namespace halvorn {

std::shared_ptr<KTDynamicColor> readMePaper(KTDynamicColorClass& colors) {
  return colors.lightColor(PlainColor::calibratedRGB(1.0, 0.992, 0.969),
                           PlainColor::calibratedRGB(0.129, 0.125, 0.114));
}

void colorWindow(const InstallerOutlets& outlets, KTDynamicColorClass& colors) {
  outlets.readMeTextView.setBackgroundColor(readMePaper(colors));
  outlets.messageField.setTextColor(colors.redWarningTextColor());
}

void colorSetupError(const InstallerOutlets& outlets, KTDynamicColorClass& colors) {
  outlets.introField.setTextColor(colors.redWarningTextColor());
}

}  // namespace halvorn
