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
OSStatus FSPathMakeRef(const UInt8* path, FSRef* location, Boolean* isFolder);
OSErr FSResolveAliasFile(FSRef* location, Boolean followsChains, Boolean* isFolder, Boolean* wasAlias);

typedef char** Handle;
typedef long Size;
typedef OSType ResType;
typedef SInt16 ResID;
typedef int ResFileRefNum;
enum { fsRdPerm = 0x01 };
ResFileRefNum CurResFile(void);
void UseResFile(ResFileRefNum file);
ResFileRefNum FSOpenResFile(const FSRef* location, SInt8 permission);
void CloseResFile(ResFileRefNum file);
Handle Get1Resource(ResType type, ResID id);
void ReleaseResource(Handle resource);
Size GetHandleSize(Handle handle);

typedef UInt32 LSRequestedInfo;
typedef UInt32 LSItemInfoFlags;
enum : LSRequestedInfo { kLSRequestBasicFlagsOnly = 0x00000004, kLSRequestAppTypeFlags = 0x00000008 };
enum : LSItemInfoFlags { kLSItemInfoIsPackage = 0x00000002, kLSItemInfoIsNativeApp = 0x00000080 };
#pragma pack(push, 2)
struct LSItemInfoRecord {
  LSItemInfoFlags flags;
  OSType filetype;
  OSType creator;
  CFStringRef extension;
};
#pragma pack(pop)
OSStatus LSCopyItemInfoForRef(const FSRef* item, LSRequestedInfo wanted, LSItemInfoRecord* information);
OSType UTGetOSTypeFromString(CFStringRef text);
CFStringRef UTCreateStringForOSType(OSType code);
OSStatus LSRegisterURL(CFURLRef url, Boolean updates);

typedef struct OpaqueLSSharedFileListRef* LSSharedFileListRef;
typedef struct OpaqueLSSharedFileListItemRef* LSSharedFileListItemRef;
extern const CFStringRef kLSSharedFileListSessionLoginItems;
LSSharedFileListRef LSSharedFileListCreate(CFAllocatorRef allocator, CFStringRef kind, CFTypeRef options);
CFArrayRef LSSharedFileListCopySnapshot(LSSharedFileListRef list, UInt32* seed);
OSStatus LSSharedFileListItemResolve(LSSharedFileListItemRef item, UInt32 flags, CFURLRef* url,
                                     FSRef* location);

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
