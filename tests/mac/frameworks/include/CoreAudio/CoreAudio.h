// What the macOS adapters use of Core Audio: properties of its objects.
#pragma once

#include "CoreFoundation/CoreFoundation.h"

extern "C" {

typedef UInt32 AudioObjectID;
struct AudioObjectPropertyAddress {
  UInt32 mSelector;
  UInt32 mScope;
  UInt32 mElement;
};
enum : UInt32 {
  kAudioObjectSystemObject = 1,
  kAudioObjectUnknown = 0,
  kAudioObjectPropertyScopeGlobal = 0x676C6F62,
  kAudioObjectPropertyScopeOutput = 0x6F757470,
  kAudioHardwarePropertyDefaultSystemOutputDevice = 0x734F7574,
  kAudioHardwarePropertyDevices = 0x64657623,
  kAudioDevicePropertyDeviceName = 0x6E616D65,
  kAudioDevicePropertyDeviceManufacturer = 0x6D616B72,
  kAudioDevicePropertyDeviceUID = 0x75696420
};
OSStatus AudioObjectGetPropertyDataSize(AudioObjectID object, const AudioObjectPropertyAddress* address,
                                        UInt32 qualifierSize, const void* qualifier, UInt32* size);
OSStatus AudioObjectGetPropertyData(AudioObjectID object, const AudioObjectPropertyAddress* address,
                                    UInt32 qualifierSize, const void* qualifier, UInt32* size, void* data);

}  // extern "C"
