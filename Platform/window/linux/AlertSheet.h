// An alert that hangs on a window and keeps it from being used.
#pragma once

#include <QDialog>
#include <QList>
#include <QPointer>
#include <functional>

#include "Platform/window/Alerts.h"
#include "Platform/window/linux/SheetPlace.h"

class QBoxLayout;

namespace halvorn {

class AlertSheet : public QDialog {
 public:
  // `ended` is called once, when the sheet is gone, with the return code of the button. A window that is too small
  // for a sheet inside it grows; closing it, too, is the first button then.
  AlertSheet(const AlertDescription& alert, QWidget* window, std::function<void(int)> ended,
             SheetPlace place = usualSheetPlace());

 protected:
  void showEvent(QShowEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  bool focusNextPrevChild(bool next) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  [[nodiscard]] QSize neededSize() const;
  void standInside();
  void letWindowBeUsed(bool may);
  void end(int returnCode);
  void letWindowHaveKeyboard(bool may);
  void addButtons(const AlertDescription& alert, QBoxLayout* into);

  const SheetPlace place_;
  std::function<void(int)> ended_;
  QList<QPointer<QWidget>> blocked_;  // of the window, inside which this stands
  QPointer<QWidget> focusBefore_;
};

}  // namespace halvorn
