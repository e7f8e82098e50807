#include <charconv>

#include "KTStuff/CocoaExtensions/SoundExtensions.h"
#include "KTStuff/KTClasses/KTDynamicColorClass.h"
#include "KTStuff/KTClasses/KTUtilities.h"
#include "KTStuff/KTClasses/PlainColor.h"
#include "Platform/processes/LaunchContext.h"
#include "tools/kt/Command.h"

namespace halvorn {
namespace {

Outcome version(const Call& call) {
  if (call.words.size() != 2) return Outcome::Misused;
  const Ordering order = call.system.versions().compareVersion(call.words[0], call.words[1]);
  const char* const word = order == Ordering::Ascending    ? "older"
                           : order == Ordering::Descending ? "newer"
                                                           : "same";
  call.answer({{"order", Text(word)}});
  return Outcome::Done;
}

Outcome desktop(const Call& call) {
  KTUtilities& utilities = call.system.utilities();
  const auto count = call.system.desktopFacts().clipboardChangeCount();
  const float idle = utilities.idleTime();
  const std::pair<const char*, AnswerValue> facts[] = {
      {"system", utilities.systemVersionString()},
      {"debugging", utilities.debugging()},
      {"dark", utilities.darkAppearance()},
      {"fullScreen", utilities.fullScreenMode()},
      {"idleSeconds", idle < 0 ? AnswerValue() : AnswerValue(static_cast<double>(idle))},
      {"clipboardChanges", count ? AnswerValue(*count) : AnswerValue()},
      {"loginItem", utilities.wasLaunchedAsLoginItem()},
      {"fileSystem", utilities.fileSystemTypeFor("/")}};
  if (call.form == AnswerForm::Json) {
    call.answer(AnswerRow(std::begin(facts), std::end(facts)));
  } else {
    for (const auto& fact : facts) call.answer({{"fact", Text(fact.first)}, fact});
  }
  return Outcome::Done;
}

Outcome told(const Call& call, const OptionalText& output) {
  if (!output) return Outcome::No;
  if (call.form == AnswerForm::Json) {
    call.answer({{"output", *output}});
  } else {
    std::fputs(output->bytes().c_str(), stdout);
  }
  return Outcome::Done;
}

Outcome script(const Call& call) {
  if (call.words.empty()) return Outcome::Misused;
  const std::vector<Text> parameters(call.words.begin() + 1, call.words.end());
  return told(call,
              call.system.utilities().runShellScript(call.words[0], parameters, call.number("--limit", 2.0)));
}

Outcome command(const Call& call) {
  if (call.words.size() != 1) return Outcome::Misused;
  return told(call, call.system.utilities().shellCommandResult(call.words[0]));
}

Outcome open(const Call& call) {
  if (call.words.size() != 1) return Outcome::Misused;
  call.system.utilities().openFile(call.words[0]);
  return Outcome::Done;
}

Outcome alias(const Call& call) {
  if (call.words.size() != 1) return Outcome::Misused;
  call.answer({{"path", call.system.utilities().resolvedAlias(call.words[0])}});
  return Outcome::Done;
}

Outcome micro(const Call& call) {
  call.system.utilities().launchMicro(LeaveFocus::No);
  return Outcome::Done;
}

Outcome devices(const Call& call) {
  const AudioDevices& all = call.system.audioDevices();
  const auto ids = all.devices();
  if (!ids) return Outcome::No;
  for (const AudioDeviceID id : *ids) {
    call.answer({{"name", answer(all.name(id))},
                 {"maker", answer(all.manufacturer(id))},
                 {"identifier", answer(all.uid(id, AudioScope::Global))}});
  }
  return Outcome::Done;
}

// The lasting name of the device that people or programs call so; nullopt when there is none.
OptionalText deviceCalled(const Text& name, const AudioDevices& all) {
  for (const AudioDeviceID id : all.devices().value_or(std::vector<AudioDeviceID>())) {
    OptionalText identifier = all.uid(id, AudioScope::Global);
    if (identifier && (*identifier == name || all.name(id) == name)) return identifier;
  }
  return std::nullopt;
}

// False, with the reason on standard error, when the sound cannot be played there.
bool playOn(const Text& name, Sound& sound, const AudioDevices& all) {
  const OptionalText device = deviceCalled(name, all);
  const OptionalText refusal =
      device ? sound.setPlaybackDeviceIdentifier(device) : OptionalText("no such device");
  if (refusal) std::fprintf(stderr, "%s: %s\n", name.bytes().c_str(), refusal->bytes().c_str());
  return !refusal && sound.play();
}

Outcome sound(const Call& call) {
  SoundExtensions& sounds = call.system.sound();
  if (call.has("--devices")) return devices(call);
  if (call.has("--list")) {
    for (const Text& name : sounds.systemSounds()) call.answer({{"sound", name}});
    return Outcome::Done;
  }
  if (call.words.size() != 1) return Outcome::Misused;
  const SoundPointer found = sounds.soundNamed(call.words[0]);
  if (!found) return Outcome::No;
  found->setVolume(sounds.alertVolume());
  if (const auto device = call.options.find("--device"); device == call.options.end()) {
    sounds.playAsSoundEffect(*found);
  } else if (!playOn(device->second, *found, call.system.audioDevices())) {
    return Outcome::No;
  }
  while (found->isPlaying() && !call.system.runUntil([&] { return !found->isPlaying(); }, 0.05)) continue;
  return Outcome::Done;
}

Outcome color(const Call& call) {
  if (call.words.size() != 6) return Outcome::Misused;
  double parts[6] = {};
  for (std::size_t i = 0; i < 6; ++i) {
    const std::string digits = call.words[i].bytes();
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), parts[i]);
    if (read.ec != std::errc()) return Outcome::Misused;
  }
  const auto made = call.system.colors().lightColor(PlainColor::sRGB(parts[0], parts[1], parts[2]),
                                                    PlainColor::sRGB(parts[3], parts[4], parts[5]));
  call.answer(
      {{"red", made->redComponent()}, {"green", made->greenComponent()}, {"blue", made->blueComponent()}});
  return Outcome::Done;
}

}  // namespace

const std::map<Text, Command>& desktopCommands() {
  static const std::map<Text, Command> commands = {
      {"version", version}, {"desktop", desktop}, {"script", script}, {"command", command}, {"open", open},
      {"alias", alias},     {"micro", micro},     {"sound", sound},   {"color", color}};
  return commands;
}

}  // namespace halvorn
