// Classes of AppKit's with what this program adds. For sources in Objective-C++ alone.
#pragma once

#import <AppKit/AppKit.h>

#include <functional>
#include <string>

#include "Core/Text.h"
#include "Platform/color/Color.h"
#include "Platform/window/mac/BoxLayout.h"

// Asks for its color whenever it is drawn.
@interface KTTextField : NSTextField {
  halvorn::ColorPointer* color_;
}
- (void)setAskedColor:(const halvorn::ColorPointer&)color;
@end

// A document, of which web and mail addresses can be opened. Asks for its colors whenever it is drawn.
@interface KTDocumentView : NSTextView <NSTextViewDelegate> {
  halvorn::ColorPointer* background_;
  halvorn::ColorPointer* text_;
  std::function<void(const halvorn::Text&)>* openLink_;
}
- (void)setAskedBackground:(const halvorn::ColorPointer&)color;
- (void)setAskedText:(const halvorn::ColorPointer&)color;
- (void)setOpenLink:(std::function<void(const halvorn::Text&)>)openLink;
@end

// Does something when a control is used.
@interface KTAction : NSObject {
  std::function<void()>* action_;
}
- (id)initWithAction:(std::function<void()>)action;
- (void)perform:(id)sender;
@end

// Holds views in rows and columns, and places them whenever it gets another size.
@interface KTBoxView : NSView {
  halvorn::Box* box_;
  halvorn::Direction direction_;
  BOOL isPlacing_;
}
- (void)setBox:(halvorn::Box)box direction:(halvorn::Direction)direction;
- (void)placeViews;
@end

// A line between two parts of a window.
@interface KTRule : NSView
@end

namespace halvorn {

// nil for null, and where there is no color.
[[nodiscard]] NSColor* colorOf(const ColorPointer& color);

}  // namespace halvorn
