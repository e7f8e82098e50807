// Shows a document to be read. Nothing it names is loaded; a link does nothing but call `openLink`, or `openWhole` where
// it stands before a document of which only the beginning is there.
#pragma once

#include <QPointer>
#include <QTextDocument>
#include <QTextEdit>
#include <functional>
#include <memory>

#include "Platform/color/Color.h"
#include "Platform/window/linux/readme/ReadMeDocument.h"

namespace halvorn {

class DocumentView : public QTextEdit {
 public:
  explicit DocumentView(QWidget* parent);

  // Shows the document, which becomes the view's, or nothing when there is none. A line before a beginning says that
  // it is one, and has a link to the whole.
  void showDocument(ReadMeDocument read);

  // Asked at each painting; null for that of the palette.
  void setBackgroundColor(const ColorPointer& color);
  void setTextColor(const ColorPointer& color);

  std::function<void(const QString& address)> openLink;  // only web and mail addresses
  std::function<void()> openWhole;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  // Tab walks through the links of the document before it leaves.
  bool focusNextPrevChild(bool next) override;

 private:
  void follow(const QString& address);
  bool selectLink(bool next);
  void drawDocument(QPainter& painter, const QRect& part);

  QPointer<QTextDocument> shown_;
  QString pressedLink_;
  ColorPointer backgroundColor_;
  ColorPointer textColor_;
};

}  // namespace halvorn
