// Rules: a bundle with Contents has its information in Contents/Info.plist, its program in Contents/MacOS and its resources
// in Contents/Resources, where the folder "LANGUAGE.lproj" of the first language that has one comes first (Bundle Programming
// Guide). A text without translation stands for itself; of the domains of settings, the command line's comes first (NSBundle,
// NSUserDefaults). Bundles of another kind, of which GNUstep itself has some, go on to be read its way.
#import <Foundation/Foundation.h>
#import <objc/runtime.h>

#include "tests/mac/frameworks/FakeMac.h"
#include "tests/mac/frameworks/FakeObjects.h"

using fakemac::state;

namespace {

IMP gnustepInformation = nullptr;
IMP gnustepResourcePath = nullptr;
IMP gnustepExecutable = nullptr;
IMP gnustepPath = nullptr;
IMP gnustepText = nullptr;
IMP gnustepMainBundle = nullptr;
IMP gnustepObjectForKey = nullptr;
IMP gnustepDomain = nullptr;

NSString* inside(NSBundle* bundle, NSString* path) {
  return [[bundle bundlePath] stringByAppendingPathComponent:path];
}
bool isThere(NSString* path) { return [[NSFileManager defaultManager] fileExistsAtPath:path]; }
bool isOfThisSystem(NSBundle* bundle) { return isThere(inside(bundle, @"Contents")); }

id informationOf(id self, SEL selector) {
  if (!isOfThisSystem(self)) return reinterpret_cast<id (*)(id, SEL)>(gnustepInformation)(self, selector);
  NSDictionary* const read = [NSDictionary dictionaryWithContentsOfFile:inside(self, @"Contents/Info.plist")];
  return read != nil ? read : [NSDictionary dictionary];
}

id resourcePathOf(id self, SEL selector) {
  if (!isOfThisSystem(self)) return reinterpret_cast<id (*)(id, SEL)>(gnustepResourcePath)(self, selector);
  return inside(self, @"Contents/Resources");
}

id executableOf(id self, SEL selector) {
  if (!isOfThisSystem(self)) return reinterpret_cast<id (*)(id, SEL)>(gnustepExecutable)(self, selector);
  NSString* const name = [[self infoDictionary] objectForKey:@"CFBundleExecutable"];
  if (![name isKindOfClass:[NSString class]]) return nil;
  NSString* const path = [inside(self, @"Contents/MacOS") stringByAppendingPathComponent:name];
  return isThere(path) ? path : nil;
}

NSString* resourceOf(NSBundle* bundle, NSString* file) {
  NSString* const resources = inside(bundle, @"Contents/Resources");
  NSMutableArray* const folders = [NSMutableArray array];
  for (const std::string& language : state().languages) {
    NSString* const name = [NSString stringWithFormat:@"%s.lproj", language.c_str()];
    [folders addObject:[resources stringByAppendingPathComponent:name]];
  }
  [folders addObject:resources];
  for (NSUInteger i = 0; i < [folders count]; ++i) {
    NSString* const path = [[folders objectAtIndex:i] stringByAppendingPathComponent:file];
    if (isThere(path)) return path;
  }
  return nil;
}

id pathOf(id self, SEL selector, NSString* name, NSString* type) {
  if (!isOfThisSystem(self))
    return reinterpret_cast<id (*)(id, SEL, id, id)>(gnustepPath)(self, selector, name, type);
  return resourceOf(self, [type length] == 0 ? name : [NSString stringWithFormat:@"%@.%@", name, type]);
}

id textOf(id self, SEL selector, NSString* key, NSString* value, NSString* table) {
  if (!isOfThisSystem(self))
    return reinterpret_cast<id (*)(id, SEL, id, id, id)>(gnustepText)(self, selector, key, value, table);
  if (state().raisesExceptions) [NSException raise:NSGenericException format:@"no table"];
  NSString* const file =
      [NSString stringWithFormat:@"%@.strings", [table length] == 0 ? @"Localizable" : table];
  NSString* const path = resourceOf(self, file);
  NSDictionary* const texts =
      path == nil ? nil : [[NSString stringWithContentsOfFile:path] propertyListFromStringsFileFormat];
  NSString* const text = [texts objectForKey:key];
  if (text != nil) return text;
  return [value length] == 0 ? key : value;
}

id mainBundle(id self, SEL selector) {
  const std::string& path = state().mainBundlePath;
  if (path.empty()) return reinterpret_cast<id (*)(id, SEL)>(gnustepMainBundle)(self, selector);
  return [NSBundle bundleWithPath:[NSString stringWithUTF8String:path.c_str()]];
}

id valueOf(const std::string& list) {
  const std::string whole =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">" + list + "</plist>";
  return [NSPropertyListSerialization propertyListWithData:[NSData dataWithBytes:whole.data()
                                                                          length:whole.size()]
                                                   options:NSPropertyListImmutable
                                                    format:NULL
                                                     error:NULL];
}

id objectForKey(id self, SEL selector, NSString* key) {
  if (state().raisesExceptions) [NSException raise:NSGenericException format:@"no settings"];
  const auto& values = state().domains[""];
  const auto found = values.find([key UTF8String]);
  if (found != values.end()) return valueOf(found->second);
  return reinterpret_cast<id (*)(id, SEL, id)>(gnustepObjectForKey)(self, selector, key);
}

id domainNamed(id self, SEL selector, NSString* name) {
  const auto found = state().domains.find([name UTF8String]);
  if (found == state().domains.end())
    return reinterpret_cast<id (*)(id, SEL, id)>(gnustepDomain)(self, selector, name);
  NSMutableDictionary* const values = [NSMutableDictionary dictionary];
  for (const auto& [key, list] : found->second)
    [values setObject:valueOf(list) forKey:[NSString stringWithUTF8String:key.c_str()]];
  return values;
}

IMP replaced(Class owner, SEL selector, IMP function, const char* types) {
  const IMP before = fakemac::methodBefore(owner, selector);
  fakemac::answerInstead(owner, selector, function, types);
  return before;
}

}  // namespace

@interface KTFakeBundles : NSObject
@end
@implementation KTFakeBundles
+ (void)load {
  const Class bundle = objc_getClass("NSBundle");
  const Class defaults = objc_getClass("NSUserDefaults");
  gnustepInformation = replaced(bundle, @selector(infoDictionary), (IMP)informationOf, "@@:");
  gnustepResourcePath = replaced(bundle, @selector(resourcePath), (IMP)resourcePathOf, "@@:");
  gnustepExecutable = replaced(bundle, @selector(executablePath), (IMP)executableOf, "@@:");
  gnustepPath = replaced(bundle, @selector(pathForResource:ofType:), (IMP)pathOf, "@@:@@");
  gnustepText = replaced(bundle, @selector(localizedStringForKey:value:table:), (IMP)textOf, "@@:@@@");
  gnustepMainBundle = replaced(object_getClass(bundle), @selector(mainBundle), (IMP)mainBundle, "@@:");
  gnustepObjectForKey = replaced(defaults, @selector(objectForKey:), (IMP)objectForKey, "@@:@");
  gnustepDomain = replaced(defaults, @selector(persistentDomainForName:), (IMP)domainNamed, "@@:@");
}
@end
