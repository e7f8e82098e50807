// A text that always fits: it breaks inside words that are longer than a line, and loses a part of itself to "…" when
// it needs more lines than it may have (the whole text is then its tool tip). A menu copies the whole text.
#pragma once

#include <QHash>
#include <QLabel>
#include <QTextLayout>

#include "Platform/color/Color.h"

namespace halvorn {

class FieldLabel : public QLabel {
 public:
  explicit FieldLabel(QWidget* parent = nullptr);

  void setFieldText(const QString& text);
  void setMaximumLines(int lines);
  // Which part is lost: the end, or the middle of what is told apart by its end, as are paths and versions.
  enum class Loses { End, Middle };
  void setLoses(Loses part);
  // For paths: they read from left to right in every language.
  void setLeftToRightText(bool leftToRight);
  // Asked at each painting; null for that of the palette.
  void setTextColor(const ColorPointer& color);

  // As they stand on the screen.
  [[nodiscard]] QStringList linesShown() const { return linesFor(width()).texts; }

  [[nodiscard]] bool hasHeightForWidth() const override { return true; }
  [[nodiscard]] int heightForWidth(int width) const override;
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  // The lines at that width, and whether some of the text is lost.
  struct Lines {
    QStringList texts;
    bool cut = false;
  };
  [[nodiscard]] const Lines& linesFor(int width) const;
  [[nodiscard]] Lines brokenFor(const QString& text, int width) const;
  [[nodiscard]] Lines withoutMiddle(int width) const;
  [[nodiscard]] int lineHeight() const;
  void tellWhatIsLost();

  int maximumLines_ = 10;
  Loses loses_ = Loses::End;
  bool leftToRightText_ = false;
  ColorPointer textColor_;
  mutable QHash<int, Lines> lines_;  // layouts ask for the same few widths again and again
};

}  // namespace halvorn
