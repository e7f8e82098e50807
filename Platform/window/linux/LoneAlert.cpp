#include "Platform/window/linux/LoneAlert.h"

#include <QGuiApplication>
#include <QPointer>
#include <QScreen>
#include <QWidget>

#include "Platform/window/linux/AlertSheet.h"
#include "Platform/window/linux/QtText.h"
#include "Platform/window/linux/StringsTranslator.h"

namespace halvorn {

void showLoneAlert(const Text& title, const AlertDescription& alert, const LocalizedStrings& strings) {
  StringsTranslator translator(strings);  // takes itself out when it ends
  QCoreApplication::installTranslator(&translator);
  if (strings.localized("LayoutDirection") == "RTL") QGuiApplication::setLayoutDirection(Qt::RightToLeft);
  // A sheet has the title of its window and stands in its middle, also when that is not shown.
  QWidget window(nullptr, Qt::Window);
  window.setWindowTitle(forDisplay(title));
  window.setGeometry(QGuiApplication::primaryScreen()->availableGeometry());
  const QPointer sheet(new AlertSheet(
      alert, &window, [](int) {}, SheetPlace::OwnWindow));
  sheet->exec();
}

}  // namespace halvorn
