// Makes AppKit's views of an interface description. For sources in Objective-C++ alone.
// Why: docs/decisions/016-the-window-description.md
#pragma once

#import <AppKit/AppKit.h>

#include <map>
#include <string>

#include "Platform/bundles/LocalizedStrings.h"
#include "Platform/window/Images.h"
#include "Platform/window/mac/BoxLayout.h"
#include "Platform/window/mac/InterfaceElement.h"
#include "Platform/window/mac/MacView.h"

namespace halvorn {

// Everything that was made. Views are held by the views they are in, and here for as long as this lives.
struct BuiltInterface {
  BuiltInterface() = default;
  ~BuiltInterface();
  BuiltInterface(const BuiltInterface&) = delete;
  BuiltInterface& operator=(const BuiltInterface&) = delete;

  // Places everything anew, on the page that is selected and around it.
  void placeAgain() const;

  Text title;
  double width = 0.0;
  double height = 0.0;
  bool isVisibleAtLaunch = false;
  NSMutableArray* held = [[NSMutableArray alloc] init];
  std::vector<NSView*> boxes;                           // what places views
  std::map<std::string, std::unique_ptr<View>> byName;  // by the description's id
  NSView* content = nil;
  NSButton* defaultButton = nil;
  std::function<void(const std::string& selector)> perform;
  std::function<void(const Text& url)> openLink;
};

// "" when all went well, else what is wrong with the description.
[[nodiscard]] Text buildInterface(const InterfaceElement& window, const LocalizedStrings& strings,
                                  Images& images, BuiltInterface& into);

}  // namespace halvorn
