// Rules: folding is the full one of Unicode (CFStringFold with kCFCompareCaseInsensitive and no locale); names of
// encodings are the registered ones, in any case, and an unknown one gives the invalid id; a key that types nothing gives
// no units, and a layout may have no data of its own (Text Input Source Services Reference, UCKeyTranslate); a type code is four
// bytes of Mac OS Roman, 0 for what is none (UTType Reference, UTGetOSTypeFromString); pages of HTML are read on the main thread
// alone, and the delegate among the options is asked before a resource is loaded, nil keeping it away (NSAttributedString
// Application Kit Additions Reference; WebResourceLoadDelegate).
#import <AppKit/AppKit.h>
#include <Carbon/Carbon.h>
#include <CommonCrypto/CommonDigest.h>
#import <Foundation/Foundation.h>
#import <objc/runtime.h>
#include <openssl/evp.h>
#include <unicode/uchar.h>
#include <unicode/ustring.h>

#include <cstring>

#include "tests/mac/frameworks/FakeMac.h"
#include "tests/mac/frameworks/FakeObjects.h"

using fakemac::state;

// Of a later system than the one that GNUstep follows: what the bytes look like, 0 when nothing can be said.
@implementation NSString (KTFakeDetection)
+ (NSStringEncoding)stringEncodingForData:(NSData*)data
                          encodingOptions:(NSDictionary*)options
                          convertedString:(NSString**)string
                      usedLossyConversion:(BOOL*)usedLossyConversion {
  const bool isAsked =
      [data length] != 0 && options == nil && string == nullptr && usedLossyConversion == nullptr;
  if (!isAsked) return static_cast<NSStringEncoding>(0);
  NSString* const read = [[[NSString alloc] initWithData:data encoding:NSUTF8StringEncoding] autorelease];
  return read != nil ? NSUTF8StringEncoding : NSISOLatin1StringEncoding;
}
@end

// GNUstep counts numbers as letters; the system does not (NSCharacterSet, "letterCharacterSet": categories L* and M*).
static id letters(id, SEL) {
  static NSCharacterSet* const set = [] {
    NSMutableCharacterSet* const members = [[NSMutableCharacterSet alloc] init];
    u_enumCharTypes(
        [](const void* context, UChar32 start, UChar32 limit, UCharCategory type) -> UBool {
          if ((U_MASK(type) & (U_GC_L_MASK | U_GC_M_MASK)) != 0) {
            [(NSMutableCharacterSet*)context addCharactersInRange:NSMakeRange(start, limit - start)];
          }
          return 1;
        },
        members);
    return members;
  }();
  return set;
}

@interface KTFakeCharacterSets : NSObject
@end
@implementation KTFakeCharacterSets
+ (void)load {
  fakemac::answerInstead(object_getClass(objc_getClass("NSCharacterSet")), @selector(letterCharacterSet),
                         (IMP)letters, "@@:");
}
@end

@interface NSObject (KTFakePageDelegate)
- (id)webView:(id)view
            resource:(id)resource
     willSendRequest:(id)request
    redirectResponse:(id)response
      fromDataSource:(id)source;
@end

// GNUstep reads no HTML. Made up is what the adapter can see of the reader: the bytes and options it is given, that it asks
// before it loads a picture, and the text of what tests have, elements taken out.
static id page(id self, SEL, NSData* data, NSDictionary* options, NSDictionary**) {
  fakemac::ImportedPage asked;
  asked.bytes.assign(static_cast<const char*>([data bytes]), [data length]);
  asked.encoding = [[options objectForKey:NSTextEncodingNameDocumentOption] UTF8String];
  asked.seconds = [[options objectForKey:NSTimeoutDocumentOption] doubleValue];
  asked.wasOnMainThread = [NSThread isMainThread];
  NSString* const text = [[[NSString alloc] initWithData:data encoding:NSUnicodeStringEncoding] autorelease];
  id const delegate = [options objectForKey:NSWebResourceLoadDelegateDocumentOption];
  const bool wouldLoad = [text rangeOfString:@"<img"].location != NSNotFound;
  if (wouldLoad && [delegate webView:nil
                               resource:nil
                        willSendRequest:@"picture"
                       redirectResponse:nil
                         fromDataSource:nil] != nil)
    ++asked.resourcesLoaded;
  state().importedPages.push_back(asked);
  if (state().readsPages == fakemac::PageReader::Raises)
    [NSException raise:NSInternalInconsistencyException format:@"page"];
  if (state().readsPages == fakemac::PageReader::Refuses) {
    [self release];
    return nil;
  }
  NSMutableString* const shown = [NSMutableString string];
  NSScanner* const scanner = [NSScanner scannerWithString:text];
  [scanner setCharactersToBeSkipped:nil];
  while (![scanner isAtEnd]) {
    NSString* piece = nil;
    if ([scanner scanUpToString:@"<" intoString:&piece]) [shown appendString:piece];
    [scanner scanUpToString:@">" intoString:nullptr];
    [scanner scanString:@">" intoString:nullptr];
  }
  return [self initWithString:shown];
}

@interface KTFakePages : NSObject
@end
@implementation KTFakePages
+ (void)load {
  fakemac::answerInstead(objc_getClass("NSAttributedString"),
                         @selector(initWithHTML:options:documentAttributes:), (IMP)page, "@@:@@^@");
}
@end

extern "C" {

void CFStringFold(CFMutableStringRef string, CFOptionFlags flags, CFLocaleRef locale) {
  if (flags != kCFCompareCaseInsensitive || locale != nullptr) return;
  NSMutableString* const text = (NSMutableString*)string;
  std::u16string units([text length], u'\0');
  [text getCharacters:reinterpret_cast<unichar*>(units.data()) range:NSMakeRange(0, units.size())];
  std::u16string folded(units.size() * 3 + 1, u'\0');
  UErrorCode error = U_ZERO_ERROR;
  const auto length = u_strFoldCase(folded.data(), static_cast<int32_t>(folded.size()), units.data(),
                                    static_cast<int32_t>(units.size()), U_FOLD_CASE_DEFAULT, &error);
  [text setString:[NSString stringWithCharacters:reinterpret_cast<const unichar*>(folded.data())
                                          length:static_cast<NSUInteger>(length)]];
}

OSType UTGetOSTypeFromString(CFStringRef text) {
  NSData* const bytes = [(NSString*)text dataUsingEncoding:NSMacOSRomanStringEncoding
                                      allowLossyConversion:NO];
  if ([bytes length] != 4) return 0;
  OSType code = 0;
  for (NSUInteger i = 0; i < 4; ++i) code = code << 8 | static_cast<const UInt8*>([bytes bytes])[i];
  return code;
}
CFStringRef UTCreateStringForOSType(OSType code) {
  const UInt8 bytes[] = {static_cast<UInt8>(code >> 24), static_cast<UInt8>(code >> 16 & 0xFF),
                         static_cast<UInt8>(code >> 8 & 0xFF), static_cast<UInt8>(code & 0xFF)};
  return (CFStringRef)fakemac::given([[NSString alloc] initWithBytes:bytes
                                                              length:4
                                                            encoding:NSMacOSRomanStringEncoding]);
}

CFStringEncoding CFStringConvertIANACharSetNameToEncoding(CFStringRef name) {
  static const std::map<std::string, CFStringEncoding> known = {
      {"us-ascii", 0x600},      {"utf-8", 0x08000100},    {"iso-8859-1", 0x201},    {"macintosh", 0},
      {"utf-16", 0x100},        {"utf-16be", 0x10000100}, {"utf-16le", 0x14000100}, {"utf-32be", 0x18000100},
      {"utf-32le", 0x1C000100}, {"windows-1252", 0x500},  {"iso-8859-2", 0x202}};
  const auto found = known.find([[(NSString*)name lowercaseString] UTF8String]);
  return found == known.end() ? kCFStringEncodingInvalidId : found->second;
}

unsigned long CFStringConvertEncodingToNSStringEncoding(CFStringEncoding encoding) {
  static const std::map<CFStringEncoding, unsigned long> known = {{0x600, 1},
                                                                  {0x08000100, 4},
                                                                  {0x201, 5},
                                                                  {0, 30},
                                                                  {0x100, 10},
                                                                  {0x500, 12},
                                                                  {0x202, 9},
                                                                  {0x10000100, 0x90000100},
                                                                  {0x14000100, 0x94000100},
                                                                  {0x18000100, 0x98000100},
                                                                  {0x1C000100, 0x9C000100}};
  const auto found = known.find(encoding);
  return found == known.end() ? kCFStringEncodingInvalidId : found->second;
}

const UInt8* CFDataGetBytePtr(CFDataRef data) { return static_cast<const UInt8*>([(NSData*)data bytes]); }

const CFStringRef kTISPropertyUnicodeKeyLayoutData = (CFStringRef) @"TISPropertyUnicodeKeyLayoutData";

TISInputSourceRef TISCopyCurrentKeyboardInputSource(void) {
  if (!state().hasKeyboardLayout) return nullptr;
  return (TISInputSourceRef)fakemac::given([[NSData alloc] initWithBytes:"layout" length:6]);
}
void* TISGetInputSourceProperty(TISInputSourceRef source, CFStringRef property) {
  const bool isLayout = property == kTISPropertyUnicodeKeyLayoutData && state().layoutHasData;
  return isLayout ? static_cast<void*>(source) : nullptr;
}
UInt8 LMGetKbdType(void) { return static_cast<UInt8>(state().keyboardType); }

OSStatus UCKeyTranslate(const UCKeyboardLayout* layout, UInt16 keyCode, UInt16 action, UInt32 modifiers,
                        UInt32 keyboardType, OptionBits options, UInt32* deadKeyState, UniCharCount capacity,
                        UniCharCount* length, UniChar* units) {
  const bool isAsked = std::memcmp(layout, "layout", 6) == 0 && action == kUCKeyActionDisplay &&
                       options == 0 && *deadKeyState == 0 && capacity == 4;
  const auto found = state().keys.find({keyCode, modifiers});
  state().keyboardTypesAsked.push_back(keyboardType);
  if (!isAsked || found == state().keys.end()) return -50;
  *length = found->second.size();
  std::memcpy(units, found->second.data(), found->second.size() * sizeof(UniChar));
  return noErr;
}

unsigned char* CC_MD5(const void* data, CC_LONG length, unsigned char* digest) {
  EVP_Digest(data, length, digest, nullptr, EVP_md5(), nullptr);
  return digest;
}

}  // extern "C"
