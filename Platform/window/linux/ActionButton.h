// A push button; the default one stands out in the highlight color. A round one is the "?" of a help button.
#pragma once

#include <QColor>
#include <QPushButton>

namespace halvorn {

class ActionButton : public QPushButton {
 public:
  enum class Shape { Plain, Round };
  ActionButton(Shape shape, QWidget* parent);

  // Shows the title as it stands: an ampersand is an ampersand.
  void setTitle(const QString& title);
  [[nodiscard]] const QString& title() const { return title_; }
  // A letter of the title that presses it together with Alt; null for none. Underlined while Alt is held.
  void setMnemonic(QChar letter);

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;

 private:
  struct Colors {
    QColor face, edge, text;
  };
  [[nodiscard]] Colors colors() const;

  Shape shape_;
  QString title_;
  bool showsFocus_ = false;  // the keyboard came here by a key
};

}  // namespace halvorn
