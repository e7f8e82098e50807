#include "Platform/window/linux/readme/DocumentView.h"

#include <QAbstractTextDocumentLayout>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <utility>
#include <vector>

#include "Platform/color/linux/QtGraphicsContext.h"

namespace halvorn {
namespace {

constexpr int kMargin = 20;
const QString kWholeDocument = QStringLiteral("halvorn:whole-document");
// In the installer's table of texts.
constexpr char kOnlyTheBeginning[] = "Only the beginning of this document is shown here.";

struct Link {
  int start = 0;
  int end = 0;
};

// The links in their order; neighbouring runs with one address are one link.
std::vector<Link> linksOf(const QTextDocument& document) {
  std::vector<Link> links;
  QString last;
  for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
    last.clear();
    for (auto it = block.begin(); !it.atEnd(); ++it) {
      const QTextFragment run = it.fragment();
      const QString address = run.charFormat().anchorHref();
      const int end = run.position() + run.length();
      if (!address.isEmpty() && address == last) {
        links.back().end = end;
      } else if (!address.isEmpty()) {
        links.push_back({run.position(), end});
      }
      last = address;
    }
  }
  return links;
}

// A line before the beginning of a document that says what it is, with the file's name as a link to the whole.
void addNotice(QTextDocument& document, const QString& fileName, const QColor& linkColor) {
  QTextCursor cursor(&document);
  cursor.insertBlock();
  cursor.movePosition(QTextCursor::Start);
  QTextBlockFormat line;
  line.setBottomMargin(kMargin);
  cursor.setBlockFormat(line);
  QTextCharFormat words;
  words.setFontItalic(true);
  cursor.insertText(QCoreApplication::translate("ReadMe", kOnlyTheBeginning) + u' ', words);
  words.setAnchor(true);
  words.setAnchorHref(kWholeDocument);
  words.setFontUnderline(true);
  words.setForeground(linkColor);
  cursor.insertText(fileName, words);
}

}  // namespace

DocumentView::DocumentView(QWidget* parent) : QTextEdit(parent) {
  setReadOnly(true);
  // With a caret, by which a screen reader reads line by line.
  setTextInteractionFlags(Qt::TextBrowserInteraction | Qt::TextSelectableByKeyboard);
  setFrameShape(QFrame::NoFrame);
  setUndoRedoEnabled(false);
  setTabChangesFocus(true);
  document()->setDocumentMargin(kMargin);
}

void DocumentView::showDocument(ReadMeDocument read) {
  QTextDocument* shown = read.document ? read.document.release() : new QTextDocument;
  shown->setParent(this);
  if (!read.isWhole) addNotice(*shown, read.fileName, palette().color(QPalette::Link));
  shown->setDocumentMargin(kMargin);
  setDocument(shown);
  delete shown_;  // the one before; the toolkit deletes only the document that the view was made with
  shown_ = shown;
  moveCursor(QTextCursor::Start);
  // The caret is scrolled to where the view is still too low to show a line.
  verticalScrollBar()->setValue(verticalScrollBar()->minimum());
}

void DocumentView::setBackgroundColor(const ColorPointer& color) {
  backgroundColor_ = color;
  viewport()->update();
}

void DocumentView::setTextColor(const ColorPointer& color) {
  textColor_ = color;
  viewport()->update();
}

void DocumentView::paintEvent(QPaintEvent* event) {
  QPainter painter(viewport());
  if (backgroundColor_) {
    QtGraphicsContext context(painter);
    backgroundColor_->setFill(context);
    painter.fillRect(event->rect(), painter.brush());
  }
  if (textColor_) return drawDocument(painter, event->rect());
  painter.end();
  QTextEdit::paintEvent(event);
}

// As the toolkit does, which takes the text's color from the palette only.
void DocumentView::drawDocument(QPainter& painter, const QRect& part) {
  QAbstractTextDocumentLayout::PaintContext how;
  how.palette = palette();
  if (const auto color = textColor_->CGColor()) how.palette.setColor(QPalette::Text, toQColor(*color));
  if (hasFocus()) how.cursorPosition = textCursor().position();
  if (textCursor().hasSelection()) {
    QTextCharFormat format;
    format.setBackground(palette().brush(QPalette::Highlight));
    format.setForeground(palette().brush(QPalette::HighlightedText));
    how.selections.append({textCursor(), format});
  }
  const int across = horizontalScrollBar()->value();
  const QPoint offset(isRightToLeft() ? horizontalScrollBar()->maximum() - across : across,
                      verticalScrollBar()->value());
  painter.translate(-offset);
  how.clip = part.translated(offset);
  painter.setClipRect(how.clip);
  document()->documentLayout()->draw(&painter, how);
}

void DocumentView::follow(const QString& address) {
  if (address == kWholeDocument && openWhole) return openWhole();
  const QString lower = address.toLower();
  const bool outside = lower.startsWith(QStringLiteral("http://")) ||
                       lower.startsWith(QStringLiteral("https://")) ||
                       lower.startsWith(QStringLiteral("mailto:"));
  if (outside && openLink) openLink(address);
}

void DocumentView::mousePressEvent(QMouseEvent* event) {
  pressedLink_ = event->button() == Qt::LeftButton ? anchorAt(event->position().toPoint()) : QString();
  QTextEdit::mousePressEvent(event);
}

void DocumentView::mouseReleaseEvent(QMouseEvent* event) {
  QTextEdit::mouseReleaseEvent(event);
  const QString link = anchorAt(event->position().toPoint());
  if (event->button() == Qt::LeftButton && !link.isEmpty() && link == pressedLink_) follow(link);
  pressedLink_.clear();
}

void DocumentView::keyPressEvent(QKeyEvent* event) {
  const QTextCursor cursor = textCursor();
  const bool confirms = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (confirms && cursor.hasSelection() && !cursor.charFormat().anchorHref().isEmpty()) {
    follow(cursor.charFormat().anchorHref());
    return;
  }
  if (confirms) {
    event->ignore();  // the default button's
    return;
  }
  QTextEdit::keyPressEvent(event);
}

bool DocumentView::selectLink(bool next) {
  const std::vector<Link> links = linksOf(*document());
  QTextCursor cursor = textCursor();
  const Link* chosen = nullptr;
  for (const Link& link : links) {
    if (next && link.start >= cursor.selectionEnd()) {
      chosen = &link;
      break;
    }
    if (!next && link.end <= cursor.selectionStart()) chosen = &link;
  }
  if (chosen == nullptr) return false;
  cursor.setPosition(chosen->start);
  cursor.setPosition(chosen->end, QTextCursor::KeepAnchor);
  setTextCursor(cursor);
  ensureCursorVisible();
  return true;
}

bool DocumentView::focusNextPrevChild(bool next) {
  if (hasFocus() && selectLink(next)) return true;
  return QTextEdit::focusNextPrevChild(next);
}

}  // namespace halvorn
