#include "Platform/bundles/mac/MacLocalizedStrings.h"

#include "Platform/running/mac/Conversions.h"

namespace halvorn {

Text MacLocalizedStrings::localized(const Text& key) const {
  const OptionalText translation = answered(OptionalText(), [&] {
    NSBundle* const bundle = [NSBundle bundleWithPath:stringOf(bundlePath_)];
    return textOf([bundle localizedStringForKey:stringOf(key) value:@"" table:nil]);
  });
  return translation && *translation != key ? *translation : key;
}

}  // namespace halvorn
