// The window's outlets: small passive views that obey the controller.
//
// Thread: main, all of them.
#pragma once

#include <memory>
#include <optional>

#include "Core/Geometry.h"
#include "Core/Text.h"
#include "Platform/color/Appearances.h"
#include "Platform/color/Color.h"
#include "Platform/window/Images.h"
#include "Platform/window/ScrollViews.h"

namespace halvorn {

enum class Hidden { No, Yes };   // Yes: takes no room and cannot be used
enum class Enabled { No, Yes };  // No: is seen and cannot be used

enum class ViewPosition { Above, Below };  // to a sibling

class View {  // what all of them can do
 public:
  virtual ~View() = default;
  virtual void setHidden(Hidden hidden) = 0;                    // at once
  [[nodiscard]] virtual Hidden isHidden() const = 0;            // by itself; what holds it may be hidden too
  virtual void setAppearance(AppearanceName name) = 0;          // and of all that it holds
  [[nodiscard]] virtual AppearanceName appearance() const = 0;  // the one it is drawn in

  // The view that holds this one; null for the outermost and for one that nothing holds.
  [[nodiscard]] virtual std::shared_ptr<View> superview() = 0;
  // Takes the view out of its superview, which is drawn again only when something else asks for it.
  virtual void removeFromSuperviewWithoutNeedingDisplay() = 0;
  // Puts the view in front of (above) or behind (below) its sibling, or all of them for null.
  virtual void addSubview(View& subview, ViewPosition positioned, View* relativeTo) = 0;
  // Null when the view is in none.
  [[nodiscard]] virtual std::shared_ptr<ScrollView> enclosingScrollView() = 0;
  // The part of the view that nothing which holds it cuts off, in coordinates as ScrollViews.h has them.
  [[nodiscard]] virtual Rect visibleRect() const = 0;
  // Scrolls at once, as little as shows the rectangle; false when nothing had to be scrolled.
  virtual bool scrollRectToVisible(const Rect& rect) = 0;
};

class TextField : public virtual View {  // a line or some of text
 public:
  [[nodiscard]] virtual Text stringValue() const = 0;  // what it shows
  virtual void setStringValue(const Text& text) = 0;   // in its place
  // Asked anew whenever the field is drawn; null for that of the appearance.
  virtual void setTextColor(const ColorPointer& color) = 0;
};

class Button : public virtual View {  // pressed by the person; what it does is set elsewhere
 public:
  [[nodiscard]] virtual Text title() const = 0;  // on it
  virtual void setTitle(const Text& title) = 0;  // "&" is an ordinary character
  // What it will do, in a sentence for those who hear the window; "" for nothing more than its title.
  virtual void setDescription(const Text& description) = 0;
  [[nodiscard]] virtual Enabled isEnabled() const = 0;  // by itself
  virtual void setEnabled(Enabled enabled) = 0;         // at once
};

class ImageView : public virtual View {  // a picture
 public:
  virtual void setImage(const ImagePointer& image) = 0;  // null shows nothing
};

// A read-only document.
class TextView : public virtual View {
 public:
  // Replaces the text by the document in the file: rich text, plain text, HTML, Markdown. False (and an empty
  // view) when the file cannot be read. Loads nothing from anywhere else and runs nothing, and takes half a second of
  // processor time at most: a document that costs more is shown as plain text, or its beginning with a link to the
  // whole.
  virtual bool setDocumentFromFile(const Text& path) = 0;
  // Asked anew whenever the view is drawn; null for that of the appearance.
  virtual void setBackgroundColor(const ColorPointer& color) = 0;
  // Likewise, of what has no color of its own in the document.
  virtual void setTextColor(const ColorPointer& color) = 0;
};

class TabView : public virtual View {  // pages, one of which is seen
 public:
  virtual void showWithoutTabsAndBorder() = 0;         // pages are turned by selectItem() alone
  virtual void selectItem(int index) = 0;              // 0 the read-me page, 1 the install page
  [[nodiscard]] virtual int selectedItem() const = 0;  // counted from 0
};

// How far something has come.
struct Progress {
  double share = 0;  // from 0 to 1
  Text text;         // the same in words
};

class ProgressIndicator : public virtual View {  // turns while something works
 public:
  // For a tool tip and for those who hear the window; nothing that is seen changes. nullopt: nobody knows, as at first.
  virtual void setProgress(const std::optional<Progress>& progress) = 0;
  virtual void startAnimation() = 0;  // turns, and is seen only then
  virtual void stopAnimation() = 0;   // and is seen no more
};

class Window {  // around the views
 public:
  virtual ~Window() = default;
  [[nodiscard]] virtual Text title() const = 0;  // in its title bar
  virtual void setTitle(const Text& title) = 0;  // at once
  virtual void center() = 0;                     // on its screen
  virtual void makeKeyAndOrderFront() = 0;       // in front of the others, with the keyboard
  virtual void orderFrontRegardless() = 0;       // also when another program is in front
  virtual void makeMain() = 0;                   // of this program's
  // Whether it is the window that the person works in.
  [[nodiscard]] virtual bool isKeyWindow() const = 0;
  // Whether the window's minimise button can be used.
  [[nodiscard]] virtual bool isMiniaturizeEnabled() const = 0;
};

}  // namespace halvorn
