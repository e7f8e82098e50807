// A wheel that turns while something is being done and is not there otherwise. It is there and stands still where nothing
// is to move.
#pragma once

#include <QBasicTimer>
#include <QProgressBar>

namespace halvorn {

class Spinner : public QProgressBar {
 public:
  Spinner(int side, QWidget* parent);

  void start();
  void stop();  // and forgets how far it was
  // For the tool tip and a screen reader: how far it is, from 0 to 1. It looks as it did.
  void setProgress(double share, const QString& text);
  void forgetProgress();
  [[nodiscard]] bool isWorking() const { return timer_.isActive(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void timerEvent(QTimerEvent* event) override;

 private:
  QBasicTimer timer_;
  int step_ = 0;
};

}  // namespace halvorn
