#include "Platform/sound/mac/MacSounds.h"

#import <AppKit/AppKit.h>

#include <mutex>
#include <utility>

#include "Platform/running/mac/Conversions.h"

namespace halvorn {

struct MacSounds::Playing {
  Playing() : sounds([[NSMutableArray alloc] init]) {}
  ~Playing() { [sounds release]; }
  Playing(const Playing&) = delete;
  Playing& operator=(const Playing&) = delete;

  // False once all has ended.
  [[nodiscard]] bool add(id sound) {
    const std::lock_guard lock(mutex);
    if (!hasEnded) [sounds addObject:sound];
    return !hasEnded;
  }
  void remove(id sound) {
    const std::lock_guard lock(mutex);
    [sounds removeObjectIdenticalTo:sound];
  }

  std::mutex mutex;
  NSMutableArray* sounds;
  bool hasEnded = false;
};

}  // namespace halvorn

using SoundsPlaying = halvorn::MacSounds::Playing;

// A sound that is told of its own end: while it plays, it is held by those that play.
@interface KTHeldSound : NSObject <NSSoundDelegate> {
  NSSound* sound_;
  std::shared_ptr<SoundsPlaying>* playing_;
}
// Takes over the reference.
- (id)initWithSound:(NSSound*)sound playing:(std::shared_ptr<SoundsPlaying>)playing;
- (NSSound*)sound;
- (BOOL)play;
@end

@implementation KTHeldSound

- (id)initWithSound:(NSSound*)sound playing:(std::shared_ptr<SoundsPlaying>)playing {
  self = [super init];
  if (self != nil) {
    sound_ = sound;
    playing_ = new std::shared_ptr<SoundsPlaying>(std::move(playing));
    [sound_ setDelegate:self];
  }
  return self;
}

- (void)dealloc {
  [sound_ setDelegate:nil];
  [sound_ release];
  delete playing_;
  [super dealloc];
}

- (NSSound*)sound {
  return sound_;
}

- (BOOL)play {
  if ([sound_ isPlaying]) return NO;
  if ((*playing_)->add(self) && ![sound_ play]) (*playing_)->remove(self);
  return YES;
}

- (void)sound:(NSSound*)sound didFinishPlaying:(BOOL)finished {
  static_cast<void>(sound);
  static_cast<void>(finished);
  [[self retain] autorelease];
  (*playing_)->remove(self);
}

@end

namespace halvorn {
namespace {

class MacSound : public Sound {
 public:
  // Takes over the reference.
  MacSound(KTHeldSound* sound, Text path) : sound_(sound), path_(std::move(path)) {}
  ~MacSound() override { [sound_ release]; }
  MacSound(const MacSound&) = delete;
  MacSound& operator=(const MacSound&) = delete;

  [[nodiscard]] Text description() const override { return path_; }
  void setVolume(float volume) override {
    attempted([&] { [[sound_ sound] setVolume:volume]; });
  }
  [[nodiscard]] OptionalText setPlaybackDeviceIdentifier(const OptionalText& uid) override {
    // The system raises an exception for a device that it does not know.
    const bool isTaken = answered(false, [&] {
      [[sound_ sound] setPlaybackDeviceIdentifier:uid ? stringOf(*uid) : nil];
      return true;
    });
    if (isTaken) return std::nullopt;
    return Text("no audio device '") + uid.value_or(Text()) + Text("'");
  }
  [[nodiscard]] double duration() const override {
    return answered(0.0, [&] { return static_cast<double>([[sound_ sound] duration]); });
  }
  bool play() override {
    return answered(false, [&] { return static_cast<bool>([sound_ play]); });
  }
  [[nodiscard]] bool isPlaying() const override {
    return answered(false, [&] { return static_cast<bool>([[sound_ sound] isPlaying]); });
  }

 private:
  KTHeldSound* sound_;
  const Text path_;
};

}  // namespace

MacSounds::MacSounds() : playing_(std::make_shared<Playing>()) {}
MacSounds::~MacSounds() = default;

Sounds::Result MacSounds::soundWithData(const Text& path, const std::string& data) {
  KTHeldSound* const held = answered<KTHeldSound*>(nil, [&]() -> KTHeldSound* {
    NSSound* const sound = [[NSSound alloc] initWithData:dataOf(data)];
    return sound != nil ? [[KTHeldSound alloc] initWithSound:sound playing:playing_] : nil;
  });
  if (held == nil) return {nullptr, Text("it is no sound that the system can play")};
  return {std::make_shared<MacSound>(held, path), Text()};
}

void MacSounds::endAll() {
  attempted([&] {
    NSArray* all = nil;
    {
      const std::lock_guard lock(playing_->mutex);
      playing_->hasEnded = true;
      all = [NSArray arrayWithArray:playing_->sounds];
    }
    for (NSUInteger i = 0; i < [all count]; ++i) [[[all objectAtIndex:i] sound] stop];
    const std::lock_guard lock(playing_->mutex);
    [playing_->sounds removeAllObjects];
  });
}

bool MacSounds::hasEnded() const {
  const std::lock_guard lock(playing_->mutex);
  return playing_->hasEnded;
}

}  // namespace halvorn
