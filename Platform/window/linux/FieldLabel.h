// A text that always fits: it breaks inside words that are longer than a line, and loses a part of itself to "…" when
// it needs more lines than it may have (the whole text is then its tool tip). The mouse marks parts of it; what is lost
// between two marked places is marked too. Ctrl+C and a menu copy what is marked, the menu without that the whole text.
#pragma once

#include <QHash>
#include <QLabel>
#include <QTextLayout>
#include <memory>
#include <vector>

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
  [[nodiscard]] QStringList linesShown() const;

  // What the mouse has marked. Of all labels of a window one at most has something marked.
  [[nodiscard]] QString markedText() const;
  void mark(qsizetype from, qsizetype to);  // positions in the text; equal ones mark nothing
  // Copies what is marked in a label of the window; false when nothing is.
  static bool copyMarkedIn(const QWidget& window);

  [[nodiscard]] bool hasHeightForWidth() const override { return true; }
  [[nodiscard]] int heightForWidth(int width) const override;
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;

 private:
  // A line, where it begins in the text, and where in it "…" stands for how much of the text; -1 where nothing is lost.
  struct Line {
    QString text;
    qsizetype start = 0;
    qsizetype lostAt = -1;
    qsizetype lost = 0;

    [[nodiscard]] qsizetype inText(qsizetype position) const;
    [[nodiscard]] qsizetype inLine(qsizetype position) const;
  };
  // The lines at that width, and whether some of the text is lost.
  struct Lines {
    std::vector<Line> lines;
    bool cut = false;
  };
  [[nodiscard]] const Lines& linesFor(int width) const;
  [[nodiscard]] Lines brokenFor(const QString& text, int width) const;
  [[nodiscard]] Line lastLine(const QString& text, const QString& rest, qsizetype start, bool isAll,
                              int width) const;
  [[nodiscard]] Lines withoutMiddle(int width) const;
  [[nodiscard]] int lineHeight() const;
  void tellWhatIsLost();
  [[nodiscard]] std::unique_ptr<QTextLayout> layoutOf(const Line& line) const;
  [[nodiscard]] qsizetype positionAt(const QPoint& place) const;
  void drawMarked(QPainter& painter, const Line& line, int y) const;
  void giveToMiddleButton() const;

  int maximumLines_ = 10;
  Loses loses_ = Loses::End;
  bool leftToRightText_ = false;
  ColorPointer textColor_;
  qsizetype markedFrom_ = 0;  // where the mouse was pressed
  qsizetype markedTo_ = 0;
  mutable QHash<int, Lines> lines_;  // layouts ask for the same few widths again and again
};

}  // namespace halvorn
