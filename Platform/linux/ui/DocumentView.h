// Shows a document to be read. Nothing it names is loaded; a link does nothing but call `openLink`.
#pragma once

#include <QPointer>
#include <QTextDocument>
#include <QTextEdit>
#include <functional>
#include <memory>

namespace halvorn {

class DocumentView : public QTextEdit {
 public:
  explicit DocumentView(QWidget* parent);

  // Shows the document, which becomes the view's, or nothing for null.
  void showDocument(std::unique_ptr<QTextDocument> document);

  std::function<void(const QString& address)> openLink;  // only web and mail addresses

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  // Tab walks through the links of the document before it leaves.
  bool focusNextPrevChild(bool next) override;

 private:
  void follow(const QString& address);
  bool selectLink(bool next);

  QPointer<QTextDocument> shown_;
  QString pressedLink_;
};

}  // namespace halvorn
