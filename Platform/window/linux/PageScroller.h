// A page that is scrolled where the window is too low for it.
#pragma once

#include <QScrollArea>

namespace halvorn {

class PageScroller : public QScrollArea {
 public:
  explicit PageScroller(QWidget* page);

  // For the keys that scroll; false when the key is none of them or there is nothing to scroll.
  bool scrollBy(int key);

  [[nodiscard]] QSize minimumSizeHint() const override;
  [[nodiscard]] QSize sizeHint() const override;

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void decideBar();
};

}  // namespace halvorn
