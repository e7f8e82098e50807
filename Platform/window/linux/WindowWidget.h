// The installer window as the toolkit has it: the widgets of the interface
// description by their ids, and the keys.
#pragma once

#include <QAbstractButton>
#include <QHash>
#include <QLabel>
#include <QList>
#include <QPointer>
#include <QString>
#include <QWidget>
#include <functional>

namespace halvorn {

class WindowWidget : public QWidget {
 public:
  WindowWidget();

  // Makes the widget known by the id; false when the id is taken.
  bool add(const QString& id, QWidget* widget);
  template <typename Widget>
  [[nodiscard]] Widget* find(const QString& id) const {
    return dynamic_cast<Widget*>(widgets_.value(id));
  }
  [[nodiscard]] bool contains(const QString& id) const { return widgets_.contains(id); }

  // The button that Return or Escape presses.
  void setKeyButton(Qt::Key key, QAbstractButton* button);
  // The next page of the tab view, and the id of what has the keyboard when it is chosen.
  void addPage(QWidget* page, const QString& focusId);
  void focusPage(int page);
  // Gives the buttons that are shown letters of their own; to be called when one changes.
  void assignMnemonics();
  // The caption is shown when the view of that id is.
  void addFollower(const QString& id, QLabel* caption) { followers_.insert(id, caption); }
  // Has those who hear the window told which caption is whose; to be called when all views are known.
  void relateCaptions();
  [[nodiscard]] QList<QWidget*> followersOf(const QWidget* widget) const;

  // In points of a font of ten points; a larger font makes the window wider.
  void setWantedSize(const QSize& size) { wanted_ = size; }
  // Makes the window higher where its texts need that, as far as the work area goes, frame and all.
  void fitTexts();
  // Gives the keyboard back to the page's first control when nothing has it (its
  // control was disabled or hidden).
  void restoreFocus();

  std::function<void(const QString& selector)> perform;  // an action of the interface description
  std::function<void()> closed;
  bool visibleAtLaunch = false;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  bool pressKeyButton(int key);
  bool performShortcut(const QKeyEvent& event);
  void takeWantedSize();
  void keepInWorkArea();

  QSize wanted_;  // empty once it has been taken
  QHash<QString, QWidget*> widgets_;
  QMultiHash<QString, QLabel*> followers_;
  QList<QWidget*> pages_;
  QHash<int, QString> pageFocus_;
  QPointer<QAbstractButton> returnButton_;
  QPointer<QAbstractButton> escapeButton_;
  int page_ = 0;
};

}  // namespace halvorn
