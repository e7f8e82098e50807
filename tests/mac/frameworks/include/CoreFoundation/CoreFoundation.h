// What the macOS adapters use of Core Foundation, declared for compilers that have no headers of it.
// Every object here is also one of Foundation's.
#pragma once

#include <cstdint>

extern "C" {

typedef std::uint8_t UInt8;
typedef std::uint16_t UInt16;
typedef std::uint32_t UInt32;
typedef std::int8_t SInt8;
typedef std::int16_t SInt16;
typedef std::int32_t SInt32;
typedef std::uint8_t Boolean;
typedef UInt32 OptionBits;
typedef UInt32 OSType;
typedef SInt32 OSStatus;
typedef SInt16 OSErr;
typedef unsigned char* StringPtr;
typedef char* Ptr;
enum { noErr = 0 };

typedef long CFIndex;
typedef unsigned long CFHashCode;
typedef const void* CFTypeRef;
typedef const struct __CFString* CFStringRef;
typedef const struct __CFArray* CFArrayRef;
typedef const struct __CFDictionary* CFDictionaryRef;
typedef const struct __CFData* CFDataRef;
typedef const struct __CFURL* CFURLRef;
typedef const struct __CFAllocator* CFAllocatorRef;
typedef struct __CFRunLoop* CFRunLoopRef;
typedef struct __CFRunLoopSource* CFRunLoopSourceRef;

void CFRelease(CFTypeRef object);
CFTypeRef CFRetain(CFTypeRef object);
CFHashCode CFHash(CFTypeRef object);

typedef UInt32 CFStringEncoding;
typedef unsigned long CFOptionFlags;
typedef struct __CFString* CFMutableStringRef;
typedef const struct __CFLocale* CFLocaleRef;
enum : CFStringEncoding { kCFStringEncodingInvalidId = 0xFFFFFFFFU };
enum : CFOptionFlags { kCFCompareCaseInsensitive = 1 };
void CFStringFold(CFMutableStringRef string, CFOptionFlags flags, CFLocaleRef locale);
CFStringEncoding CFStringConvertIANACharSetNameToEncoding(CFStringRef name);
unsigned long CFStringConvertEncodingToNSStringEncoding(CFStringEncoding encoding);
const UInt8* CFDataGetBytePtr(CFDataRef data);

extern const CFStringRef kCFRunLoopCommonModes;
CFRunLoopRef CFRunLoopGetCurrent(void);
void CFRunLoopAddSource(CFRunLoopRef loop, CFRunLoopSourceRef source, CFStringRef mode);
void CFRunLoopRemoveSource(CFRunLoopRef loop, CFRunLoopSourceRef source, CFStringRef mode);

}  // extern "C"
