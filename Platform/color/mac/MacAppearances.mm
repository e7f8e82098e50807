#include "Platform/color/mac/MacAppearances.h"

#import <AppKit/AppKit.h>

#include "Platform/running/mac/Conversions.h"

namespace halvorn {
namespace {

// Inherited is the name of none.
NSString* nameOf(AppearanceName name) {
  switch (name) {
    case AppearanceName::Aqua:
      return NSAppearanceNameAqua;
    case AppearanceName::DarkAqua:
      return NSAppearanceNameDarkAqua;
    case AppearanceName::Inherited:
      return nil;
  }
  return nil;
}

class MacAppearance : public Appearance {
 public:
  // Takes over the reference.
  explicit MacAppearance(NSAppearance* appearance) : appearance_(appearance) {}
  ~MacAppearance() override { [appearance_ release]; }
  MacAppearance(const MacAppearance&) = delete;
  MacAppearance& operator=(const MacAppearance&) = delete;

  [[nodiscard]] std::optional<AppearanceName> bestMatchFromAppearancesWithNames(
      const std::vector<AppearanceName>& names) const override {
    return answered(std::optional<AppearanceName>(), [&]() -> std::optional<AppearanceName> {
      NSMutableArray* const asked = [NSMutableArray arrayWithCapacity:names.size()];
      for (const AppearanceName name : names) {
        if (NSString* const known = nameOf(name)) [asked addObject:known];
      }
      NSString* const best = [appearance_ bestMatchFromAppearancesWithNames:asked];
      for (const AppearanceName name : names) {
        if (best != nil && [best isEqualToString:nameOf(name)]) return name;
      }
      return std::nullopt;
    });
  }

 private:
  NSAppearance* appearance_;
};

template <typename Question>
AppearancePointer appearanceThat(Question question) {
  NSAppearance* const found = answered<NSAppearance*>(nil, [&] { return [question() retain]; });
  return found != nil ? std::make_shared<MacAppearance>(found) : nullptr;
}

}  // namespace

AppearancePointer MacAppearances::currentAppearance() const {
  return appearanceThat([] { return [NSAppearance currentAppearance]; });
}

AppearancePointer MacAppearances::effectiveAppearance() const {
  return appearanceThat([] { return [[NSApplication sharedApplication] effectiveAppearance]; });
}

}  // namespace halvorn
