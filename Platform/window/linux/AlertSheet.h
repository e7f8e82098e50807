// An alert that hangs on a window and keeps it from being used.
#pragma once

#include <QDialog>
#include <functional>

#include "Platform/window/Alerts.h"

class QBoxLayout;

namespace halvorn {

class AlertSheet : public QDialog {
 public:
  // `ended` is called once, when the sheet is gone, with the return code of the button.
  AlertSheet(const AlertDescription& alert, QWidget* window, std::function<void(int)> ended);

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  void end(int returnCode);
  void letWindowHaveKeyboard(bool may);
  void addButtons(const AlertDescription& alert, QBoxLayout* into);

  std::function<void(int)> ended_;
};

}  // namespace halvorn
