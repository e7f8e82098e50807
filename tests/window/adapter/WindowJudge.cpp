#include "tests/window/adapter/WindowJudge.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QHash>
#include <QImage>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QTextEdit>
#include <QTextLayout>
#include <QWidget>
#include <algorithm>
#include <cmath>

#include "Platform/window/linux/FieldLabel.h"
#include "Platform/window/linux/Spinner.h"
#include "Platform/window/linux/pictures/PictureLabel.h"

namespace halvorn {
namespace {

constexpr double kLeastContrast = 4.5;
constexpr double kLeastEdgeContrast = 3.0;
constexpr int kLarger = 2;

class Judge {
 public:
  Judge(QWidget& window, const QMargins& frame, const QAbstractButton* reachedByKey)
      : window_(window), frame_(frame), reachedByKey_(reachedByKey) {
    for (QWidget* widget : window.findChildren<QWidget*>()) {
      if (widget->isVisible() && isLeaf(*widget) && widget->window() == &window) leaves_.push_back(widget);
    }
  }

  std::vector<std::string> judge() {
    judgePlace();
    for (QWidget* leaf : leaves_) {
      judgeInside(*leaf);
      judgeText(*leaf);
      judgePicture(*leaf);
      judgeName(*leaf);
      judgeContrast(*leaf);
    }
    judgeOverlaps();
    return std::move(findings_);
  }

 private:
  static bool isLeaf(const QWidget& widget) {
    return dynamic_cast<const FieldLabel*>(&widget) != nullptr ||
           dynamic_cast<const PictureLabel*>(&widget) != nullptr ||
           dynamic_cast<const Spinner*>(&widget) != nullptr ||
           qobject_cast<const QAbstractButton*>(&widget) != nullptr ||
           qobject_cast<const QTextEdit*>(&widget) != nullptr ||
           qobject_cast<const QScrollBar*>(&widget) != nullptr;
  }

  static std::string nameOf(const QWidget& widget) {
    const auto* label = dynamic_cast<const FieldLabel*>(&widget);
    const auto* button = qobject_cast<const QAbstractButton*>(&widget);
    const QString text = label != nullptr ? label->text() : button != nullptr ? button->text() : QString();
    return std::string(widget.metaObject()->className()) + " " + widget.objectName().toStdString() + " '" +
           text.left(40).toStdString() + "'";
  }
  void find(const std::string& what, const QWidget& widget) {
    findings_.push_back(what + ": " + nameOf(widget));
  }

  QRect inWindow(const QWidget& widget) const {
    return {widget.mapTo(&window_, QPoint(0, 0)), widget.size()};
  }
  // What of it is not scrolled away.
  QRect seen(const QWidget& widget) const {
    return widget.visibleRegion().boundingRect().translated(widget.mapTo(&window_, QPoint(0, 0)));
  }

  void judgePlace() {
    const QRect space = window_.screen()->availableGeometry();
    const bool isFramed = window_.frameGeometry() != window_.geometry();
    const QRect whole = isFramed ? window_.frameGeometry() : window_.geometry().marginsAdded(frame_);
    if (!space.contains(whole)) findings_.push_back("not within the work area");
    if (whole.width() > space.width() || whole.height() > space.height())
      findings_.push_back("larger than the work area: " + std::to_string(whole.width()) + "x" +
                          std::to_string(whole.height()) + " of " + std::to_string(space.width()) + "x" +
                          std::to_string(space.height()));
    const QSize least = window_.minimumSize();
    if (least.width() > space.width() || least.height() > space.height())
      findings_.push_back("its least size is larger than the work area");
  }

  // Inside everything around it; what a page scrolls may only be below.
  void judgeInside(const QWidget& leaf) {
    QRect rect = leaf.rect();
    for (const QWidget* at = &leaf; at != &window_; at = at->parentWidget()) {
      rect.translate(at->pos());
      const QWidget* around = at->parentWidget();
      const auto* area = qobject_cast<const QScrollArea*>(around->parentWidget());
      const bool scrolls = area != nullptr && area->viewport() == around && area->widget() == at;
      if (scrolls) {
        if (at->width() > around->width()) find("a page is wider than its window", leaf);
        if (at->height() > around->height() && !area->verticalScrollBar()->isVisible())
          find("a page cannot be scrolled", leaf);
        if (at->heightForWidth(area->width()) <= area->height() && area->verticalScrollBar()->isVisible())
          find("a page is scrolled that fits", leaf);
        return;
      }
      if (!around->rect().contains(rect)) return find("sticks out", leaf);
    }
  }

  // As the toolkit breaks it by itself.
  static int heightOfLines(const FieldLabel& label) {
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    int lines = 0;
    for (const QString& paragraph : label.text().split(u'\n')) {
      QTextLayout layout(paragraph, label.font());
      layout.setTextOption(option);
      layout.beginLayout();
      for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine(), ++lines)
        line.setLineWidth(label.width());
      layout.endLayout();
    }
    return lines * label.fontMetrics().height();
  }

  void judgeText(const QWidget& leaf) {
    if (const auto* label = dynamic_cast<const FieldLabel*>(&leaf)) {
      if (heightOfLines(*label) > label->height() + 1 && label->toolTip() != label->text())
        find("is cut", leaf);
    }
    if (const auto* button = qobject_cast<const QAbstractButton*>(&leaf)) {
      const QFontMetrics metrics = button->fontMetrics();
      const QString text = QString(button->text()).remove(u'&');
      if (metrics.horizontalAdvance(text) + 8 > button->width() && button->toolTip() != text)
        find("is cut", leaf);
      if (metrics.height() + 4 > button->height()) find("is too low", leaf);
    }
  }

  void judgePicture(const QWidget& leaf) {
    const auto* picture = dynamic_cast<const PictureLabel*>(&leaf);
    if (picture == nullptr || leaf.visibleRegion().isEmpty()) return;
    const QSizeF shown = picture->sizeShown();
    if (std::abs(std::max(shown.width(), shown.height()) - picture->width()) > 1)
      find("does not fill its box", leaf);
  }

  void judgeName(QWidget& leaf) {
    const auto* label = dynamic_cast<const FieldLabel*>(&leaf);
    if ((label != nullptr && label->text().isEmpty()) || qobject_cast<QScrollBar*>(&leaf) != nullptr) return;
    QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(&leaf);
    if (interface == nullptr || interface->text(QAccessible::Name).isEmpty()) find("has no name", leaf);
  }

  static double luminance(QRgb color) {
    const auto part = [](int value) {
      const double share = value / 255.0;
      return share <= 0.03928 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * part(qRed(color)) + 0.7152 * part(qGreen(color)) + 0.0722 * part(qBlue(color));
  }
  static double contrast(QRgb one, QRgb other) {
    const double a = luminance(one);
    const double b = luminance(other);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
  }

  // Twice as large as it stands there: of thin strokes no pixel would have the whole color.
  QImage enlarged(const QRect& part) {
    const qreal ratio = window_.devicePixelRatioF() * kLarger;
    QImage image((QSizeF(part.size()) * ratio).toSize(), QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    window_.render(&image, QPoint(), QRegion(part));
    return image;
  }
  // As that part of a widget stands in the window.
  QImage enlarged(const QWidget& widget, const QRect& part) {
    return enlarged(part.translated(widget.mapTo(&window_, QPoint(0, 0))));
  }

  // The tone there is most of, against the one that differs most from it.
  static double bestContrast(const QImage& image) {
    QHash<QRgb, int> tones;
    for (int y = 0; y < image.height(); ++y) {
      // Looked up once for all that stand beside each other: most of the window's time would go there.
      const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
      for (int x = 0, end = 0; x < image.width(); x = end) {
        while (end < image.width() && line[end] == line[x]) ++end;
        tones[line[x]] += end - x;
      }
    }
    QRgb ground = 0;
    int most = 0;
    for (auto it = tones.begin(); it != tones.end(); ++it) {
      if (it.value() > most) ground = it.key(), most = it.value();
    }
    double best = 1.0;
    for (auto it = tones.begin(); it != tones.end(); ++it) best = std::max(best, contrast(it.key(), ground));
    return best;
  }

  void judgeContrast(QWidget& leaf) {
    if (!leaf.isEnabled() || leaf.visibleRegion().boundingRect().height() < leaf.fontMetrics().height())
      return;
    if (const auto* label = dynamic_cast<FieldLabel*>(&leaf); label != nullptr && !label->text().isEmpty())
      expectContrast(bestContrast(enlarged(leaf, leaf.visibleRegion().boundingRect())), kLeastContrast, "",
                     leaf);
    auto* button = qobject_cast<QAbstractButton*>(&leaf);
    if (button == nullptr) return;
    const bool wasUnderMouse = button->underMouse();
    // Round its corners is what it stands on.
    const QColor around = enlarged(leaf, QRect(0, 0, 1, 1)).pixelColor(0, 0);
    button->setAttribute(Qt::WA_UnderMouse, false);
    judgeButton(*button, around, "");
    button->setAttribute(Qt::WA_UnderMouse, true);
    judgeButton(*button, around, " under the mouse");
    button->setDown(true);
    judgeButton(*button, around, " pressed");
    button->setDown(false);
    button->setAttribute(Qt::WA_UnderMouse, wasUnderMouse);
  }

  QImage imageOf(QWidget& widget, const QColor& ground) {
    const qreal ratio = window_.devicePixelRatioF() * kLarger;
    QImage image((QSizeF(widget.size()) * ratio).toSize(), QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(ground);
    widget.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    return image;
  }

  // Its title, its edge and, where it has the keyboard, its ring.
  void judgeButton(QAbstractButton& button, const QColor& ground, const std::string& when) {
    constexpr int kRing = 2;
    constexpr int kAround = 8;  // of the ring, the gap and the edge
    const QImage whole = imageOf(button, ground);
    const double scale = static_cast<double>(whole.width()) / button.width();
    const int around = static_cast<int>(kAround * scale);
    const QImage inside = whole.copy(whole.rect().marginsRemoved({around, around, around, around}));
    expectContrast(bestContrast(inside), kLeastContrast, when, button);
    // From the left inwards: first the ring, then the edge.
    const auto pixel = [&](double x) { return whole.pixel(static_cast<int>(x * scale), whole.height() / 2); };
    double best = 1.0;
    for (double x = kRing + 0.5; x < kAround; x += 0.25)
      best = std::max(best, contrast(pixel(x), ground.rgb()));
    expectContrast(best, kLeastEdgeContrast, " of the edge" + when, button);
    if (&button == reachedByKey_ || pixel(1) != ground.rgb())
      expectContrast(contrast(pixel(1), ground.rgb()), kLeastEdgeContrast, " of the ring" + when, button);
  }

  void expectContrast(double found, double least, const std::string& where, const QWidget& leaf) {
    if (found < least) find("contrast " + std::to_string(found).substr(0, 4) + where, leaf);
  }

  void judgeOverlaps() {
    for (std::size_t i = 0; i < leaves_.size(); ++i) {
      for (std::size_t j = i + 1; j < leaves_.size(); ++j) {
        if (leaves_[i]->isAncestorOf(leaves_[j]) || leaves_[j]->isAncestorOf(leaves_[i])) continue;
        const QRect common = seen(*leaves_[i]) & seen(*leaves_[j]);
        if (!common.isEmpty()) find("lies over " + nameOf(*leaves_[j]), *leaves_[i]);
      }
    }
  }

  QWidget& window_;
  QMargins frame_;
  const QAbstractButton* reachedByKey_;
  std::vector<QWidget*> leaves_;
  std::vector<std::string> findings_;
};

}  // namespace

std::vector<std::string> findingsIn(QWidget& window, const QMargins& frame,
                                    const QAbstractButton* reachedByKey) {
  return Judge(window, frame, reachedByKey).judge();
}

}  // namespace halvorn
