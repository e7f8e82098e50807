// An alert that hangs on a window and keeps it from being used. Its texts are scrolled where the screen is too small for
// them; its buttons are always there.
#pragma once

#include <QDialog>
#include <QList>
#include <QPointer>
#include <functional>

#include "Platform/window/Alerts.h"
#include "Platform/window/linux/SheetPlace.h"

class QBoxLayout;

namespace halvorn {

class PageScroller;

class AlertSheet : public QDialog {
 public:
  // `ended` is called once, when the sheet is gone, with the return code of the button. A window that is too small
  // for a sheet inside it grows; closing it, too, is the first button then.
  AlertSheet(const AlertDescription& alert, QWidget* window, std::function<void(int)> ended,
             SheetPlace place = usualSheetPlace());

 protected:
  void showEvent(QShowEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool focusNextPrevChild(bool next) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  [[nodiscard]] QWidget* pageOf(const AlertDescription& alert);
  [[nodiscard]] QSize neededSize() const;
  void standInside();
  void standOver(const QRect& owner);
  void letWindowBeUsed(bool may);
  void end(int returnCode);
  void letWindowHaveKeyboard(bool may);
  [[nodiscard]] QBoxLayout* buttonsOf(const AlertDescription& alert);

  const SheetPlace place_;
  PageScroller* texts_ = nullptr;
  QBoxLayout* buttons_ = nullptr;
  std::function<void(int)> ended_;
  QList<QPointer<QWidget>> blocked_;  // of the window, inside which this stands
  QPointer<QWidget> focusBefore_;
};

}  // namespace halvorn
