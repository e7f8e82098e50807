#include "Sources/WindowColors.h"

#include "KTStuff/KTClasses/KTDynamicColorClass.h"
#include "KTStuff/KTClasses/PlainColor.h"

namespace halvorn {

void colorWindow(const InstallerOutlets& outlets, KTDynamicColorClass& colors) {
  const ColorPointer paper = PlainColor::calibratedRGB(1.0, 0.992, 0.969);
  const ColorPointer darkPaper = PlainColor::calibratedRGB(0.129, 0.125, 0.114);
  outlets.readMeTextView.setBackgroundColor(colors.lightColor(paper, darkPaper));
  outlets.messageField.setTextColor(colors.redWarningTextColor());
}

void colorSetupError(const InstallerOutlets& outlets, KTDynamicColorClass& colors) {
  outlets.introField.setTextColor(colors.redWarningTextColor());
}

}  // namespace halvorn
