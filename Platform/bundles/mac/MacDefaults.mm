#include "Platform/bundles/mac/MacDefaults.h"

#include "Platform/running/mac/Conversions.h"

namespace halvorn {

std::optional<PropertyValue> MacDefaults::objectForKey(const Text& key) const {
  return answered(std::optional<PropertyValue>(), [&] {
    return valueOf([[NSUserDefaults standardUserDefaults] objectForKey:stringOf(key)]);
  });
}

std::optional<PropertyValue> MacDefaults::objectForKey(const Text& key, const Text& domain) const {
  return answered(std::optional<PropertyValue>(), [&] {
    NSUserDefaults* const defaults = [NSUserDefaults standardUserDefaults];
    return valueOf([[defaults persistentDomainForName:stringOf(domain)] objectForKey:stringOf(key)]);
  });
}

}  // namespace halvorn
