// A place of the window that shows nothing and that a screen reader watches.
#pragma once

#include <QWidget>

namespace halvorn {

class AnnouncementArea : public QWidget {
 public:
  explicit AnnouncementArea(QWidget* parent) : QWidget(parent) {
    setFixedSize(1, 1);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    lower();
    hide();
  }

  // A notification that comes into view is read out whole.
  void announce(const QString& text) {
    hide();
    setAccessibleName(text);
    show();
  }
};

}  // namespace halvorn
