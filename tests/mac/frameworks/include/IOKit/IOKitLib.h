// What the macOS adapters use of IOKit: the registry's services and their properties.
#pragma once

#if __has_include(<mach/mach.h>)
#include <mach/mach.h>
#else
typedef unsigned int mach_port_t;
typedef int kern_return_t;
enum { KERN_SUCCESS = 0 };
#endif

#include "CoreFoundation/CoreFoundation.h"

extern "C" {

typedef mach_port_t io_object_t;
typedef io_object_t io_registry_entry_t;
typedef io_object_t io_iterator_t;
typedef UInt32 IOOptionBits;
typedef struct __CFDictionary* CFMutableDictionaryRef;
extern const mach_port_t kIOMasterPortDefault;
CFMutableDictionaryRef IOServiceMatching(const char* name);
// Takes over the dictionary.
kern_return_t IOServiceGetMatchingServices(mach_port_t port, CFDictionaryRef matching, io_iterator_t* found);
io_object_t IOIteratorNext(io_iterator_t iterator);
kern_return_t IORegistryEntryCreateCFProperties(io_registry_entry_t entry, CFMutableDictionaryRef* properties,
                                                CFAllocatorRef allocator, IOOptionBits options);
kern_return_t IOObjectRelease(io_object_t object);

}  // extern "C"
