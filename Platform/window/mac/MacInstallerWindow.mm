#include "Platform/window/mac/MacInstallerWindow.h"

#include <utility>

#include "Core/Format.h"
#include "Platform/files/posix/BoundedFile.h"
#include "Platform/running/mac/Conversions.h"
#include "Platform/window/mac/InterfaceBuilder.h"
#include "Platform/window/mac/MacApplication.h"
#include "Platform/window/mac/MacViews.h"
#include "Platform/window/mac/WindowOf.h"

@interface KTWindowDelegate : NSObject <NSWindowDelegate> {
  std::function<void()>* closed_;
}
- (id)initWithClosed:(std::function<void()>)closed;
@end

@implementation KTWindowDelegate

- (id)initWithClosed:(std::function<void()>)closed {
  self = [super init];
  if (self != nil) closed_ = new std::function<void()>(std::move(closed));
  return self;
}

- (void)dealloc {
  delete closed_;
  [super dealloc];
}

- (void)windowWillClose:(NSNotification*)notification {
  static_cast<void>(notification);
  (*closed_)();
}

@end

namespace halvorn {
namespace {

constexpr std::size_t kLargestDescription = 256UL * 1024;

// The name of the first outlet that was not made, or is another kind of view; "" when all are there.
Text missingOutlet(const BuiltInterface& built) {
  const auto is = [&](const char* name, auto* kind) {
    const auto found = built.byName.find(name);
    return found != built.byName.end() && dynamic_cast<decltype(kind)>(found->second.get()) != nullptr;
  };
  for (const char* name : {"nameField", "introField", "pathField", "explanationField", "messageField"}) {
    if (!is(name, static_cast<MacTextField*>(nullptr))) return name;
  }
  for (const char* name : {"installButton", "cancelButton", "helpButton"}) {
    if (!is(name, static_cast<MacButton*>(nullptr))) return name;
  }
  for (const char* name : {"iconField", "checkmarkField"}) {
    if (!is(name, static_cast<MacImageView*>(nullptr))) return name;
  }
  if (!is("tabView", static_cast<MacTabView*>(nullptr))) return "tabView";
  if (!is("readMeTextView", static_cast<MacTextView*>(nullptr))) return "readMeTextView";
  return is("progressIndicator", static_cast<MacProgressIndicator*>(nullptr)) ? Text() : "progressIndicator";
}

NSWindow* windowFor(const BuiltInterface& built) {
  const NSUInteger style =
      NSTitledWindowMask | NSClosableWindowMask | NSMiniaturizableWindowMask | NSResizableWindowMask;
  NSWindow* const window =
      [[NSWindow alloc] initWithContentRect:NSMakeRect(100, 100, built.width, built.height)
                                  styleMask:style
                                    backing:NSBackingStoreBuffered
                                      defer:NO];
  [window setReleasedWhenClosed:NO];
  [window setContentMinSize:NSMakeSize(built.width, built.height)];
  [window setContentView:built.content];
  if (built.defaultButton != nil) [window setDefaultButtonCell:[built.defaultButton cell]];
  return window;
}

}  // namespace

struct MacInstallerWindow::Parts {
  Parts() = default;
  ~Parts() {
    attempted([&] {
      [window setDelegate:nil];
      [window orderOut:nil];
      [window setContentView:nil];
      [window release];
      [delegate release];
    });
  }
  Parts(const Parts&) = delete;
  Parts& operator=(const Parts&) = delete;

  template <typename Outlet>
  Outlet& named(const char* name) {
    return dynamic_cast<Outlet&>(*built.byName.at(name));
  }

  BuiltInterface built;
  NSWindow* window = nil;
  KTWindowDelegate* delegate = nil;
  std::unique_ptr<MacWindow> outlet;
  MacInstallerActions actions;
};

MacInstallerWindow::Loaded MacInstallerWindow::load(const Text& descriptionPath,
                                                    const LocalizedStrings& strings, Images& images,
                                                    MacApplication& application) {
  const auto description = readRegularFile(descriptionPath.bytes(), kLargestDescription);
  if (!description) return {nullptr, format("%@: cannot be read", descriptionPath)};
  const ReadInterfaceElement read = readInterfaceElement(*description);
  if (!read.element) return {nullptr, format("%@: %@", descriptionPath, read.problem)};
  auto parts = std::make_unique<Parts>();
  const Text problem = answered(Text("the views could not be made"), [&] {
    const Text wrong = buildInterface(*read.element, strings, images, parts->built);
    if (!wrong.isEmpty()) return wrong;
    const Text missing = missingOutlet(parts->built);
    return missing.isEmpty() ? missing : format("no usable %@", missing);
  });
  if (!problem.isEmpty()) return {nullptr, format("%@: %@", descriptionPath, problem)};
  Text reason;
  attempted([&] {
    @try {
      parts->window = windowFor(parts->built);
    } @catch (NSException* raised) {
      reason = textOf([raised reason]).value_or(Text());
    }
  });
  if (parts->window == nil) return {nullptr, format("%@: there is no screen (%@)", descriptionPath, reason)};
  parts->outlet = std::make_unique<MacWindow>(parts->window, [&application] { application.windowIsShown(); });
  parts->outlet->setTitle(parts->built.title);
  return {std::unique_ptr<MacInstallerWindow>(new MacInstallerWindow(std::move(parts))), {}};
}

MacInstallerWindow::MacInstallerWindow(std::unique_ptr<Parts> parts) : parts_(std::move(parts)) {
  Parts* const all = parts_.get();
  const auto call = [](const std::function<void()>& action) {
    if (action) action();
  };
  all->built.perform = [all, call](const std::string& selector) {
    if (selector == "install:") call(all->actions.install);
    if (selector == "cancel:") call(all->actions.cancel);
    if (selector == "openDocumentation:") call(all->actions.openDocumentation);
  };
  all->built.openLink = [all](const Text& url) {
    if (all->actions.openLink) all->actions.openLink(url);
  };
  attempted([&] {
    all->delegate =
        [[KTWindowDelegate alloc] initWithClosed:[all, call] { call(all->actions.windowClosed); }];
    [all->window setDelegate:all->delegate];
  });
}

MacInstallerWindow::~MacInstallerWindow() = default;

InstallerOutlets MacInstallerWindow::outlets() {
  Parts& all = *parts_;
  return {*all.outlet,
          all.named<MacTabView>("tabView"),
          all.named<MacTextField>("nameField"),
          all.named<MacTextField>("introField"),
          all.named<MacTextField>("pathField"),
          all.named<MacTextField>("explanationField"),
          all.named<MacTextField>("messageField"),
          all.named<MacImageView>("iconField"),
          all.named<MacImageView>("checkmarkField"),
          all.named<MacTextView>("readMeTextView"),
          all.named<MacButton>("installButton"),
          all.named<MacButton>("cancelButton"),
          all.named<MacButton>("helpButton"),
          all.named<MacProgressIndicator>("progressIndicator")};
}

void MacInstallerWindow::setActions(MacInstallerActions actions) { parts_->actions = std::move(actions); }

void MacInstallerWindow::showIfVisibleAtLaunch() {
  const bool isVisible = answered(false, [&] { return static_cast<bool>([parts_->window isVisible]); });
  if (parts_->built.isVisibleAtLaunch && !isVisible) parts_->outlet->makeKeyAndOrderFront();
}

void MacInstallerWindow::hide() {
  attempted([&] { [parts_->window orderOut:nil]; });
}

NSWindow* windowOf(MacInstallerWindow& window) { return window.parts().window; }

}  // namespace halvorn
