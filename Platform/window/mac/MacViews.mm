#include "Platform/window/mac/MacViews.h"

#include "Platform/files/posix/BoundedFile.h"
#include "Platform/running/mac/Conversions.h"
#include "Platform/window/mac/MacImage.h"

namespace halvorn {
namespace {

constexpr std::size_t kLargestDocument = std::size_t{4} << 20;

// As the system reads it; what it does not know is shown as the text that it is.
NSAttributedString* documentIn(NSString* path, const std::string& bytes) {
  NSAttributedString* const read = [[NSAttributedString alloc] initWithPath:path documentAttributes:NULL];
  if (read != nil) return [read autorelease];
  NSString* text = [[[NSString alloc] initWithData:dataOf(bytes) encoding:NSUTF8StringEncoding] autorelease];
  if (text == nil)
    text = [[[NSString alloc] initWithData:dataOf(bytes) encoding:NSISOLatin1StringEncoding] autorelease];
  return text != nil ? [[[NSAttributedString alloc] initWithString:text] autorelease] : nil;
}

}  // namespace

void MacTextField::setStringValue(const Text& text) {
  text_ = text;
  attempted([&] { [field_ setStringValue:stringOf(text)]; });
  placeAgain();
}

void MacTextField::setTextColor(const ColorPointer& color) {
  attempted([&] { [field_ setAskedColor:color]; });
}

void MacButton::setTitle(const Text& title) {
  title_ = title;
  attempted([&] { [button_ setTitle:stringOf(title)]; });
  placeAgain();
}

void MacButton::setDescription(const Text& description) {
  attempted([&] {
    // Of 10.10 and later.
    if ([button_ respondsToSelector:@selector(setAccessibilityHelp:)])
      [button_ setAccessibilityHelp:stringOf(description)];
  });
}

Enabled MacButton::isEnabled() const {
  return answered(Enabled::No, [&] { return [button_ isEnabled] ? Enabled::Yes : Enabled::No; });
}

void MacButton::setEnabled(Enabled enabled) {
  attempted([&] { [button_ setEnabled:enabled == Enabled::Yes]; });
}

void MacImageView::setImage(const ImagePointer& image) {
  attempted([&] { [view_ setImage:imageOf(image)]; });
}

bool MacTextView::setDocumentFromFile(const Text& path) {
  const auto bytes = readRegularFile(path.bytes(), kLargestDocument);
  return answered(false, [&] {
    NSAttributedString* const document = bytes ? documentIn(stringOf(path), *bytes) : nil;
    NSAttributedString* const empty = [[[NSAttributedString alloc] initWithString:@""] autorelease];
    [[document_ textStorage] setAttributedString:document != nil ? document : empty];
    return document != nil;
  });
}

void MacTextView::setBackgroundColor(const ColorPointer& color) {
  attempted([&] { [document_ setAskedBackground:color]; });
}

void MacTextView::setTextColor(const ColorPointer& color) {
  attempted([&] { [document_ setAskedText:color]; });
}

void MacTabView::showWithoutTabsAndBorder() {
  attempted([&] { [view_ setTabViewType:NSNoTabsNoBorder]; });
}

void MacTabView::selectItem(int index) {
  attempted([&] {
    if (index >= 0 && index < static_cast<int>([view_ numberOfTabViewItems]))
      [view_ selectTabViewItemAtIndex:index];
  });
}

int MacTabView::selectedItem() const {
  return answered(0,
                  [&] { return static_cast<int>([view_ indexOfTabViewItem:[view_ selectedTabViewItem]]); });
}

void MacProgressIndicator::setProgress(const std::optional<Progress>& progress) {
  attempted([&] {
    const double range = [view_ maxValue] - [view_ minValue];
    [view_ setDoubleValue:[view_ minValue] + (progress ? progress->share * range : 0)];
    [view_ setToolTip:progress ? stringOf(progress->text) : nil];
  });
}

void MacProgressIndicator::startAnimation() {
  attempted([&] { [view_ startAnimation:nil]; });
}

void MacProgressIndicator::setHidden(Hidden hidden) {
  hidden_ = hidden;
  MacView::setHidden(hidden);
}

void MacProgressIndicator::stopAnimation() {
  attempted([&] { [view_ stopAnimation:nil]; });
}

void MacWindow::setTitle(const Text& title) {
  title_ = title;
  attempted([&] { [window_ setTitle:stringOf(title)]; });
}

void MacWindow::center() {
  attempted([&] { [window_ center]; });
}

void MacWindow::makeKeyAndOrderFront() {
  attempted([&] { [window_ makeKeyAndOrderFront:nil]; });
  if (shown_) shown_();
}

void MacWindow::orderFrontRegardless() {
  attempted([&] { [window_ orderFrontRegardless]; });
}

void MacWindow::makeMain() {
  attempted([&] { [window_ makeMainWindow]; });
}

// Also while an alert hangs on it.
bool MacWindow::isKeyWindow() const {
  return answered(false, [&] {
    NSWindow* const sheet = [window_ attachedSheet];
    return static_cast<bool>([window_ isKeyWindow] || (sheet != nil && [sheet isKeyWindow]));
  });
}

bool MacWindow::isMiniaturizeEnabled() const {
  return answered(false, [&] {
    // Window managers that draw the frame have the button for themselves.
    NSButton* const button = [window_ standardWindowButton:NSWindowMiniaturizeButton];
    const bool mayBe = ([window_ styleMask] & NSMiniaturizableWindowMask) != 0;
    return button != nil ? static_cast<bool>([button isEnabled]) : mayBe;
  });
}

}  // namespace halvorn
