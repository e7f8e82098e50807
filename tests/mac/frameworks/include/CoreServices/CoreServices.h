// What the macOS adapters use of Core Services: file references, Apple events, Launch Services.
#pragma once

#include "CoreFoundation/CoreFoundation.h"

extern "C" {

struct ProcessSerialNumber {
  UInt32 highLongOfPSN;
  UInt32 lowLongOfPSN;
};
struct FSRef {
  UInt8 hidden[80];
};
OSStatus FSRefMakePath(const FSRef* location, UInt8* path, UInt32 capacity);

enum : OSType {
  gestaltSystemVersion = 0x73797376,
  gestaltSystemVersionMajor = 0x73797331,
  gestaltSystemVersionMinor = 0x73797332,
  gestaltSystemVersionBugFix = 0x73797333
};
OSErr Gestalt(OSType selector, SInt32* answer);

typedef OSType DescType;
typedef OSType AEEventClass;
typedef OSType AEEventID;
typedef SInt16 AEReturnID;
typedef SInt32 AETransactionID;
typedef SInt32 AESendMode;
typedef SInt16 AESendPriority;
typedef struct OpaqueAEDataStorageType** AEDataStorage;
#pragma pack(push, 2)
struct AEDesc {
  DescType descriptorType;
  AEDataStorage dataHandle;
};
#pragma pack(pop)
typedef AEDesc AEAddressDesc;
typedef AEDesc AppleEvent;
enum { typeNull = 0x6E756C6C, typeProcessSerialNumber = 0x70736E20 };
enum { kAutoGenerateReturnID = -1, kAnyTransactionID = 0 };
enum { kAENormalPriority = 0, kAEHighPriority = 1 };
OSErr AECreateDesc(DescType type, const void* data, long size, AEDesc* result);
OSErr AEDisposeDesc(AEDesc* descriptor);
OSErr AECreateAppleEvent(AEEventClass eventClass, AEEventID eventID, const AEAddressDesc* target,
                         AEReturnID returnID, AETransactionID transaction, AppleEvent* result);

}  // extern "C"
