// Rules: a device's UID is a string that the caller releases, its name and manufacturer are bytes that fit into what they are
// given (AudioHardware.h, AudioHardwareDeprecated.h); a sound takes only a device that is there and raises an exception
// else (NSSound, "playbackDeviceIdentifier"); -play answers NO while it plays; the delegate is told of every end.
#import <AppKit/AppKit.h>
#include <CoreAudio/CoreAudio.h>
#import <objc/runtime.h>

#include <algorithm>
#include <cstring>

#include "tests/mac/frameworks/FakeMac.h"
#include "tests/mac/frameworks/FakeObjects.h"

using fakemac::state;

namespace {

constexpr OSStatus kNotRunning = 0x73746F70;
constexpr OSStatus kBadObject = 0x216F626A;
constexpr OSStatus kBadProperty = 0x77686F3F;

const fakemac::AudioDevice* deviceWith(AudioObjectID id) {
  for (const fakemac::AudioDevice& device : state().audioDevices) {
    if (device.id == id) return &device;
  }
  return nullptr;
}

OSStatus giveBytes(const std::string& text, UInt32* size, void* data) {
  if (text.size() + 1 > *size) return 0x2173697A;  // '!siz'
  std::memcpy(data, text.c_str(), text.size() + 1);
  *size = static_cast<UInt32>(text.size() + 1);
  return noErr;
}

std::vector<NSSound*>& playing() {
  static std::vector<NSSound*> all;
  return all;
}

}  // namespace

extern "C" {

OSStatus AudioObjectGetPropertyDataSize(AudioObjectID object, const AudioObjectPropertyAddress* address,
                                        UInt32, const void*, UInt32* size) {
  if (!state().hasAudio) return kNotRunning;
  const bool isList = object == kAudioObjectSystemObject &&
                      address->mSelector == kAudioHardwarePropertyDevices &&
                      address->mScope == kAudioObjectPropertyScopeGlobal && address->mElement == 0;
  if (!isList) return kBadProperty;
  *size = static_cast<UInt32>(state().audioDevices.size() * sizeof(AudioObjectID));
  if (state().deviceVanishes) state().audioDevices.pop_back();
  return noErr;
}

OSStatus AudioObjectGetPropertyData(AudioObjectID object, const AudioObjectPropertyAddress* address, UInt32,
                                    const void*, UInt32* size, void* data) {
  if (!state().hasAudio) return kNotRunning;
  if (address->mElement != 0) return kBadProperty;
  if (object == kAudioObjectSystemObject) {
    auto* const ids = static_cast<AudioObjectID*>(data);
    if (address->mSelector == kAudioHardwarePropertyDefaultSystemOutputDevice) {
      *ids = state().alertDevice;
      return noErr;
    }
    if (address->mSelector != kAudioHardwarePropertyDevices) return kBadProperty;
    const std::size_t room = *size / sizeof(AudioObjectID);
    std::size_t count = 0;
    for (const auto& device : state().audioDevices) {
      if (count < room) ids[count++] = device.id;
    }
    *size = static_cast<UInt32>(count * sizeof(AudioObjectID));
    return noErr;
  }
  const fakemac::AudioDevice* const device = deviceWith(object);
  if (device == nullptr) return kBadObject;
  if (address->mSelector == kAudioDevicePropertyDeviceUID) {
    state().scopesAsked.push_back(address->mScope);
    *static_cast<CFTypeRef*>(data) =
        fakemac::given([[NSString alloc] initWithUTF8String:device->uid.c_str()]);
    return noErr;
  }
  if (address->mScope != kAudioObjectPropertyScopeGlobal) return kBadProperty;
  if (address->mSelector == kAudioDevicePropertyDeviceName) return giveBytes(device->name, size, data);
  if (address->mSelector == kAudioDevicePropertyDeviceManufacturer)
    return giveBytes(device->maker, size, data);
  return kBadProperty;
}

}  // extern "C"

@interface KTFakeSound : NSSound {
  double seconds_;
  BOOL isPlaying_;
  NSString* device_;
  float volume_;
  id delegate_;
}
@end

@implementation KTFakeSound
// Every sound that is made is one of these.
+ (void)load {
  const auto allocate = [](id, SEL) -> id {
    return NSAllocateObject([KTFakeSound class], 0, NSDefaultMallocZone());
  };
  fakemac::answerInstead(object_getClass(objc_getClass("NSSound")), @selector(alloc),
                         (IMP) static_cast<id (*)(id, SEL)>(allocate), "@@:");
}
- (id)initWithData:(NSData*)data {
  const auto* const bytes = static_cast<const unsigned char*>([data bytes]);
  if ([data length] < 44 || std::memcmp(bytes, "RIFF", 4) != 0) {
    [self release];
    return nil;
  }
  std::uint32_t bytesPerSecond = 0;
  std::uint32_t length = 0;
  std::memcpy(&bytesPerSecond, bytes + 28, 4);
  std::memcpy(&length, bytes + 40, 4);
  seconds_ = static_cast<double>(length) / bytesPerSecond;
  volume_ = 1;
  ++state().liveSounds;
  return self;
}
- (void)dealloc {
  if (isPlaying_) state().playLog.emplace_back("cut off");
  std::erase(playing(), self);
  if (seconds_ > 0) --state().liveSounds;
  [device_ release];
  [super dealloc];
}
- (void)setDelegate:(id)delegate {
  delegate_ = delegate;
}
- (NSTimeInterval)duration {
  return seconds_;
}
- (void)setVolume:(float)volume {
  volume_ = volume;
}
- (float)volume {
  return volume_;
}
- (void)setPlaybackDeviceIdentifier:(NSString*)uid {
  const std::string wanted = uid != nil ? [uid UTF8String] : "";
  const auto& all = state().audioDevices;
  const bool isKnown = state().hasAudio && std::any_of(all.begin(), all.end(), [&](const auto& device) {
                         return device.uid == wanted;
                       });
  if (uid != nil && !isKnown) [NSException raise:NSInvalidArgumentException format:@"no device"];
  [uid retain];
  [device_ release];
  device_ = uid;
}
- (BOOL)isPlaying {
  return isPlaying_;
}
- (BOOL)play {
  if (isPlaying_ || !state().hasAudio) return NO;
  isPlaying_ = YES;
  playing().push_back(self);
  char line[100];
  std::snprintf(line, sizeof(line), "play at %.2f on %s", static_cast<double>(volume_),
                device_ != nil ? [device_ UTF8String] : "default");
  state().playLog.emplace_back(line);
  return YES;
}
- (void)endWithFinished:(BOOL)finished {
  std::erase(playing(), self);
  isPlaying_ = NO;
  [delegate_ sound:self didFinishPlaying:finished];
}
- (BOOL)stop {
  if (!isPlaying_) return NO;
  [self endWithFinished:NO];
  return YES;
}
@end

namespace fakemac {

void finishSounds() {
  NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
  const std::vector<NSSound*> all = playing();
  for (NSSound* sound : all) [(KTFakeSound*)sound endWithFinished:YES];
  [pool release];
}

}  // namespace fakemac
