// The window's outlets: small passive views that obey the controller.
//
// Thread: main, all of them.
#pragma once

#include "Core/Text.h"
#include "Platform/Images.h"

namespace halvorn {

enum class Hidden { No, Yes };
enum class Enabled { No, Yes };

// The appearances a view can be held to.
enum class AppearanceName { Inherited, Aqua, DarkAqua };

class View {
 public:
  virtual ~View() = default;
  virtual void setHidden(Hidden hidden) = 0;
  [[nodiscard]] virtual Hidden isHidden() const = 0;
  virtual void setAppearance(AppearanceName name) = 0;
  [[nodiscard]] virtual AppearanceName appearance() const = 0;
};

class TextField : public virtual View {
 public:
  [[nodiscard]] virtual Text stringValue() const = 0;
  virtual void setStringValue(const Text& text) = 0;
};

class Button : public virtual View {
 public:
  [[nodiscard]] virtual Text title() const = 0;
  virtual void setTitle(const Text& title) = 0;
  [[nodiscard]] virtual Enabled isEnabled() const = 0;
  virtual void setEnabled(Enabled enabled) = 0;
};

class ImageView : public virtual View {
 public:
  virtual void setImage(const ImagePointer& image) = 0;  // null shows nothing
};

// A read-only document.
class TextView : public virtual View {
 public:
  // Replaces the text by the document in the file: rich text, plain text, HTML, Markdown. False (and an empty view)
  // when the file cannot be read. Loads nothing from anywhere else and runs nothing.
  virtual bool setDocumentFromFile(const Text& path) = 0;
};

class TabView : public virtual View {
 public:
  virtual void showWithoutTabsAndBorder() = 0;
  virtual void selectItem(int index) = 0;  // 0 the read-me page, 1 the install page
  [[nodiscard]] virtual int selectedItem() const = 0;
};

class ProgressIndicator : public virtual View {
 public:
  virtual void startAnimation() = 0;
  virtual void stopAnimation() = 0;
};

class Window {
 public:
  virtual ~Window() = default;
  [[nodiscard]] virtual Text title() const = 0;
  virtual void setTitle(const Text& title) = 0;
  virtual void center() = 0;
  virtual void makeKeyAndOrderFront() = 0;
  virtual void orderFrontRegardless() = 0;
  virtual void makeMain() = 0;
  // Whether the window's minimise button can be used.
  [[nodiscard]] virtual bool isMiniaturizeEnabled() const = 0;
};

}  // namespace halvorn
