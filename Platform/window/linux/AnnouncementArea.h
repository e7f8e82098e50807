// A place of the window that shows nothing and that a screen reader watches.
#pragma once

#include <QWidget>

namespace halvorn {

// A notification that comes into view is read out whole. One is made for each text: a screen reader remembers
// the name of the one before.
class AnnouncementArea : public QWidget {
 public:
  AnnouncementArea(const QString& text, QWidget* parent) : QWidget(parent) {
    setFixedSize(1, 1);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAccessibleName(text);
    lower();
    show();
  }
};

}  // namespace halvorn
