// A row that becomes a column where the window is too narrow for it: its views then stand below each other, each
// as wide as there is room.
#pragma once

#include <QBoxLayout>
#include <vector>

namespace halvorn {

class RowOrColumn : public QBoxLayout {
 public:
  // `characters`: how many of them the views that stretch want beside the others; with none it is a row as long
  // as every view has the width it wants.
  explicit RowOrColumn(int characters);

  [[nodiscard]] QSize minimumSize() const override;
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] bool hasHeightForWidth() const override { return true; }
  [[nodiscard]] int heightForWidth(int width) const override;
  [[nodiscard]] int minimumHeightForWidth(int width) const override { return heightForWidth(width); }
  void setGeometry(const QRect& rect) override;

 private:
  struct Place {
    QLayoutItem* item;
    int offset;  // from the leading edge of a row, from the top of a column
    int extent;  // along it
  };
  [[nodiscard]] std::vector<QLayoutItem*> shown() const;
  [[nodiscard]] int stretchOf(const QLayoutItem* item) const;
  [[nodiscard]] int wantedWidth() const;
  [[nodiscard]] std::vector<Place> row(int width) const;
  [[nodiscard]] std::vector<Place> column(int width) const;
  [[nodiscard]] QMargins margins() const;

  int characters_;
};

}  // namespace halvorn
