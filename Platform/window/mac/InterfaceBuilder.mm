#include "Platform/window/mac/InterfaceBuilder.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <sstream>

#include "Core/Format.h"
#include "Platform/running/mac/Conversions.h"
#include "Platform/window/mac/ControlClasses.h"
#include "Platform/window/mac/MacImage.h"
#include "Platform/window/mac/MacViews.h"

namespace halvorn {
namespace {

constexpr int kDeepest = 16;
constexpr double kNarrowestButton = 92.0;
constexpr double kHighestText = 100'000.0;

// A misspelt attribute would otherwise be a silent nothing.
const std::map<std::string, std::set<std::string>>& knownAttributes() {
  static const std::map<std::string, std::set<std::string>> all = {
      {"window", {"id", "title", "width", "height", "visibleAtLaunch"}},
      {"row", {"spacing", "margins", "stretch", "stacksBelow", "order"}},
      {"column", {"spacing", "margins", "stretch", "stacksBelow", "order"}},
      {"space", {"size"}},
      {"tabView", {"id", "stretch"}},
      {"page", {"title", "focus", "scrolls"}},
      {"textField", {"id", "name", "text", "style", "lines", "follows", "stretch"}},
      {"imageView", {"id", "name", "size", "image", "hidden", "stretch"}},
      {"textView", {"id", "name", "stretch"}},
      {"button", {"id", "name", "title", "action", "key", "shape", "stretch"}},
      {"progressIndicator", {"id", "name", "size", "stretch"}},
      {"rule", {}}};
  return all;
}

class Builder {
 public:
  Builder(const LocalizedStrings& strings, Images& images, BuiltInterface& into)
      : strings_(strings),
        images_(images),
        built_(into),
        direction_(strings.localized("LayoutDirection") == Text("RTL") ? Direction::RightToLeft
                                                                       : Direction::LeftToRight) {}

  Text buildWindow(const InterfaceElement& window);

 private:
  [[nodiscard]] Text localized(const InterfaceElement& element, const char* attribute) const {
    const Text key = element.value(attribute);
    return key.isEmpty() ? key : strings_.localized(key);
  }
  [[nodiscard]] PlacesAgain placesAgain() const {
    return [built = &built_] { built->placeAgain(); };
  }
  void fail(const Text& what) {
    if (problem_.isEmpty()) problem_ = what;
  }
  bool isKnown(const InterfaceElement& element);
  void add(const InterfaceElement& element, NSView* holder, NSView* view);
  void name(const InterfaceElement& element, std::unique_ptr<View> view);
  Box boxOf(const InterfaceElement& element, NSView* holder);
  Box boxOfMany(const InterfaceElement& element, NSView* holder);
  Box boxAround(NSView* view, const InterfaceElement& element, std::function<Extent(double)> needed);
  Box boxOfTabs(const InterfaceElement& element, NSView* holder);
  void addPage(const InterfaceElement& page, NSTabView* tabs);
  Box boxOfField(const InterfaceElement& element, NSView* holder);
  Box boxOfImage(const InterfaceElement& element, NSView* holder);
  Box boxOfDocument(const InterfaceElement& element, NSView* holder);
  Box boxOfButton(const InterfaceElement& element, NSView* holder);
  Box boxOfProgress(const InterfaceElement& element, NSView* holder);
  Box boxOfRule(const InterfaceElement& element, NSView* holder);
  KTBoxView* boxView(NSRect frame);

  const LocalizedStrings& strings_;
  Images& images_;
  BuiltInterface& built_;
  const Direction direction_;
  Text problem_;
  int depth_ = 0;
};

bool Builder::isKnown(const InterfaceElement& element) {
  const auto known = knownAttributes().find(element.name);
  if (known == knownAttributes().end()) {
    fail(format("unknown element %@", Text(element.name)));
    return false;
  }
  for (const auto& [attribute, value] : element.attributes) {
    if (known->second.count(attribute) == 0)
      fail(format("unknown attribute %@ of %@", Text(attribute), Text(element.name)));
  }
  return problem_.isEmpty();
}

void Builder::add(const InterfaceElement& element, NSView* holder, NSView* view) {
  const Text spoken = localized(element, "name");
  // Of 10.10 and later.
  if (!spoken.isEmpty() && [view respondsToSelector:@selector(setAccessibilityLabel:)])
    [view setAccessibilityLabel:stringOf(spoken)];
  [holder addSubview:view];
  [built_.held addObject:view];
}

void Builder::name(const InterfaceElement& element, std::unique_ptr<View> view) {
  const std::string id = element.value("id").bytes();
  if (!built_.byName.emplace(id, std::move(view)).second) fail(format("id %@ used twice", Text(id)));
}

KTBoxView* Builder::boxView(NSRect frame) {
  KTBoxView* const view = [[[KTBoxView alloc] initWithFrame:frame] autorelease];
  [built_.held addObject:view];
  built_.boxes.push_back(view);
  return view;
}

Box Builder::boxAround(NSView* view, const InterfaceElement& element, std::function<Extent(double)> needed) {
  Box box;
  box.kind = Box::Kind::View;
  box.stretch = element.number("stretch", 0);
  box.needed = std::move(needed);
  box.isShown = [view] { return ![view isHidden]; };
  box.place = [view](const Rect& place) {
    const NSRect frame = NSMakeRect(place.x, place.y, place.width, place.height);
    if (!NSEqualRects(frame, [view frame])) [view setFrame:frame];
  };
  return box;
}

Box Builder::boxOfMany(const InterfaceElement& element, NSView* holder) {
  Box box;
  box.kind = element.name == "row" ? Box::Kind::Row : Box::Kind::Column;
  box.spacing = element.number("spacing", 8);
  box.stretch = element.number("stretch", 0);
  std::istringstream margins(element.value("margins").bytes());
  margins >> box.left >> box.top >> box.right >> box.bottom;
  for (const InterfaceElement& child : element.children) box.children.push_back(boxOf(child, holder));
  return box;
}

Box Builder::boxOf(const InterfaceElement& element, NSView* holder) {
  Box box;
  if (++depth_ > kDeepest) fail("nested too deeply");
  if (isKnown(element)) {
    if (element.name == "row" || element.name == "column") box = boxOfMany(element, holder);
    if (element.name == "tabView") box = boxOfTabs(element, holder);
    if (element.name == "textField") box = boxOfField(element, holder);
    if (element.name == "imageView") box = boxOfImage(element, holder);
    if (element.name == "textView") box = boxOfDocument(element, holder);
    if (element.name == "button") box = boxOfButton(element, holder);
    if (element.name == "progressIndicator") box = boxOfProgress(element, holder);
    if (element.name == "rule") box = boxOfRule(element, holder);
    if (element.name == "space") {
      box.kind = Box::Kind::Space;
      box.size = element.number("size", 0);
    }
  }
  --depth_;
  return box;
}

Box Builder::boxOfTabs(const InterfaceElement& element, NSView* holder) {
  NSTabView* const tabs = [[[NSTabView alloc] initWithFrame:[holder bounds]] autorelease];
  add(element, holder, tabs);
  for (const InterfaceElement& page : element.children) {
    if (page.name != "page") fail("a tab view holds pages");
    if (isKnown(page)) addPage(page, tabs);
  }
  name(element, std::make_unique<MacTabView>(tabs, placesAgain()));
  return boxAround(tabs, element, [](double width) { return Extent{width, 0}; });
}

void Builder::addPage(const InterfaceElement& page, NSTabView* tabs) {
  NSTabViewItem* const item = [[[NSTabViewItem alloc] initWithIdentifier:nil] autorelease];
  KTBoxView* const content = boxView([tabs contentRect]);
  NSView* shown = content;
  if (page.value("scrolls") == Text("yes")) {
    NSScrollView* const scroller = [[[NSScrollView alloc] initWithFrame:[tabs contentRect]] autorelease];
    [scroller setHasVerticalScroller:YES];
    [scroller setAutohidesScrollers:YES];
    [scroller setBorderType:NSNoBorder];
    [scroller setDrawsBackground:NO];
    [scroller setDocumentView:content];
    [content setAutoresizingMask:NSViewWidthSizable];
    shown = scroller;
  }
  [item setLabel:stringOf(localized(page, "title"))];
  Box box;
  box.spacing = 0;
  for (const InterfaceElement& child : page.children) box.children.push_back(boxOf(child, content));
  for (Box& child : box.children) child.stretch = std::max(1, child.stretch);
  [content setBox:std::move(box) direction:direction_];
  [item setView:shown];
  [tabs addTabViewItem:item];
}

NSFont* fontOf(const std::string& style) {
  const CGFloat size = [NSFont systemFontSize];
  if (style == "title") return [NSFont boldSystemFontOfSize:size * 1.8];
  if (style == "lead") return [NSFont systemFontOfSize:size * 1.15];
  if (style == "caption") return [NSFont systemFontOfSize:size * 0.9];
  if (style == "emphasized") return [NSFont boldSystemFontOfSize:size];
  return [NSFont systemFontOfSize:size];
}

// What its cell leaves free on both sides is not the text's.
Extent sizeOfText(NSTextField* field, double width) {
  constexpr double kBesideText = 6.0;
  NSAttributedString* const text = [[field cell] attributedStringValue];
  const NSRect needed =
      [text boundingRectWithSize:NSMakeSize(std::max(1.0, width - kBesideText), kHighestText)
                         options:NSStringDrawingUsesLineFragmentOrigin];
  return {std::min(width, std::ceil(needed.size.width) + kBesideText), std::ceil(needed.size.height)};
}

Box Builder::boxOfField(const InterfaceElement& element, NSView* holder) {
  static const std::set<std::string> styles = {"",          "title", "lead",      "caption",
                                               "secondary", "path",  "emphasized"};
  const std::string style = element.value("style").bytes();
  if (styles.count(style) == 0) fail(format("unknown style %@", Text(style)));
  KTTextField* const field = [[[KTTextField alloc] initWithFrame:NSMakeRect(0, 0, 100, 20)] autorelease];
  [field setEditable:NO];
  [field setSelectable:NO];
  [field setBordered:NO];
  [field setBezeled:NO];
  [field setDrawsBackground:NO];
  [field setFont:fontOf(style)];
  [[field cell] setWraps:YES];
  if (style == "caption" || style == "secondary") [field setTextColor:[NSColor disabledControlTextColor]];
  if (direction_ == Direction::RightToLeft) [field setAlignment:NSRightTextAlignment];
  add(element, holder, field);
  auto view = std::make_unique<MacTextField>(field, placesAgain());
  MacTextField* const text = view.get();
  const std::string followed = element.value("follows").bytes();
  const std::string own = element.value("id").bytes();
  built_.byName.emplace(own.empty() ? "of " + followed : own, std::move(view));
  Box box = boxAround(field, element, [field](double width) { return sizeOfText(field, width); });
  BuiltInterface* const built = &built_;
  // A field without a text takes no room, and neither does what stands for one that is not there.
  box.isShown = [text, followed, built, field] {
    if (followed.empty()) return text->isHidden() == Hidden::No && !text->stringValue().isEmpty();
    const auto* const other = dynamic_cast<const MacTextField*>(built->byName[followed].get());
    const bool isThere =
        other != nullptr && other->isHidden() == Hidden::No && !other->stringValue().isEmpty();
    [field setHidden:!isThere];
    return isThere;
  };
  text->setStringValue(localized(element, "text"));
  return box;
}

Box Builder::boxOfImage(const InterfaceElement& element, NSView* holder) {
  const double size = element.number("size", 64);
  NSImageView* const view = [[[NSImageView alloc] initWithFrame:NSMakeRect(0, 0, size, size)] autorelease];
  [view setImageScaling:NSImageScaleProportionallyUpOrDown];
  [view setEditable:NO];
  [view setImageFrameStyle:NSImageFrameNone];
  add(element, holder, view);
  auto outlet = std::make_unique<MacImageView>(view, placesAgain());
  const Text picture = element.value("image");
  if (!picture.isEmpty()) outlet->setImage(images_.imageNamed(picture));
  if (element.value("hidden") == Text("yes")) [view setHidden:YES];
  name(element, std::move(outlet));
  return boxAround(view, element, [size](double) { return Extent{size, size}; });
}

Box Builder::boxOfDocument(const InterfaceElement& element, NSView* holder) {
  const NSRect frame = NSMakeRect(0, 0, 400, 300);
  NSScrollView* const scroller = [[[NSScrollView alloc] initWithFrame:frame] autorelease];
  KTDocumentView* const document = [[[KTDocumentView alloc] initWithFrame:frame] autorelease];
  [scroller setHasVerticalScroller:YES];
  [scroller setBorderType:NSNoBorder];
  [document setEditable:NO];
  [document setSelectable:YES];
  [document setRichText:YES];
  [document setVerticallyResizable:YES];
  [document setHorizontallyResizable:NO];
  [document setAutoresizingMask:NSViewWidthSizable];
  [document setTextContainerInset:NSMakeSize(16, 12)];
  [document setMinSize:NSMakeSize(0, 0)];
  [document setMaxSize:NSMakeSize(kHighestText, kHighestText)];
  [[document textContainer] setContainerSize:NSMakeSize(frame.size.width, kHighestText)];
  [[document textContainer] setWidthTracksTextView:YES];
  BuiltInterface* const built = &built_;
  [document setOpenLink:[built](const Text& url) {
    if (built->openLink) built->openLink(url);
  }];
  [scroller setDocumentView:document];
  add(element, holder, scroller);
  name(element, std::make_unique<MacTextView>(scroller, document, placesAgain()));
  Box box = boxAround(scroller, element, [](double width) { return Extent{width, 0}; });
  box.stretch = std::max(1, box.stretch);
  return box;
}

Box Builder::boxOfButton(const InterfaceElement& element, NSView* holder) {
  const bool isRound = element.value("shape") == Text("round");
  NSButton* const button = [[[NSButton alloc] initWithFrame:NSMakeRect(0, 0, 90, 26)] autorelease];
  [button setBezelStyle:isRound ? NSCircularBezelStyle : NSRoundedBezelStyle];
  BuiltInterface* const built = &built_;
  KTAction* const action =
      [[[KTAction alloc] initWithAction:[built, selector = element.value("action").bytes()] {
        if (built->perform) built->perform(selector);
      }] autorelease];
  [built_.held addObject:action];
  [button setTarget:action];
  [button setAction:@selector(perform:)];
  if (element.value("key") == Text("return")) {
    [button setKeyEquivalent:@"\r"];
    built_.defaultButton = button;
  }
  if (element.value("key") == Text("escape")) [button setKeyEquivalent:@"\033"];
  add(element, holder, button);
  auto outlet = std::make_unique<MacButton>(button, placesAgain());
  outlet->setTitle(localized(element, "title"));
  name(element, std::move(outlet));
  return boxAround(button, element, [button, isRound](double) {
    const NSSize size = [[button cell] cellSize];
    const double width = isRound ? std::max(size.width, size.height) : size.width + 16;
    return Extent{isRound ? width : std::max(kNarrowestButton, width), std::max<double>(size.height, 24)};
  });
}

Box Builder::boxOfProgress(const InterfaceElement& element, NSView* holder) {
  const double size = element.number("size", 22);
  NSProgressIndicator* const view =
      [[[NSProgressIndicator alloc] initWithFrame:NSMakeRect(0, 0, size, size)] autorelease];
  [view setStyle:NSProgressIndicatorSpinningStyle];
  [view setIndeterminate:YES];
  [view setDisplayedWhenStopped:NO];
  add(element, holder, view);
  auto outlet = std::make_unique<MacProgressIndicator>(view, placesAgain());
  const MacProgressIndicator* const indicator = outlet.get();
  name(element, std::move(outlet));
  Box box = boxAround(view, element, [size](double) { return Extent{size, size}; });
  // Its room is kept while it does not turn, when some systems hide the view.
  box.isShown = [indicator] { return indicator->isHidden() == Hidden::No; };
  return box;
}

Box Builder::boxOfRule(const InterfaceElement& element, NSView* holder) {
  KTRule* const view = [[[KTRule alloc] initWithFrame:NSMakeRect(0, 0, 100, 1)] autorelease];
  add(element, holder, view);
  return boxAround(view, element, [](double width) { return Extent{width, 1}; });
}

Text Builder::buildWindow(const InterfaceElement& window) {
  if (window.name != "window") return "no window";
  if (!isKnown(window)) return problem_;
  built_.title = localized(window, "title");
  built_.width = window.number("width", 640);
  built_.height = window.number("height", 420);
  built_.isVisibleAtLaunch = window.value("visibleAtLaunch") == Text("yes");
  KTBoxView* const content = boxView(NSMakeRect(0, 0, built_.width, built_.height));
  Box box;
  box.spacing = 0;
  for (const InterfaceElement& child : window.children) box.children.push_back(boxOf(child, content));
  for (Box& child : box.children) child.stretch = std::max(1, child.stretch);
  [content setBox:std::move(box) direction:direction_];
  built_.content = content;
  return problem_;
}

}  // namespace

BuiltInterface::~BuiltInterface() {
  attempted([&] {
    byName.clear();
    [held release];
  });
}

void BuiltInterface::placeAgain() const {
  attempted([&] {
    for (NSView* const view : boxes) [(KTBoxView*)view placeViews];
  });
}

Text buildInterface(const InterfaceElement& window, const LocalizedStrings& strings, Images& images,
                    BuiltInterface& into) {
  return Builder(strings, images, into).buildWindow(window);
}

}  // namespace halvorn
