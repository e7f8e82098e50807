#include <algorithm>
#include <utility>

#include "Core/Paths.h"
#include "KTStuff/CocoaExtensions/SoundExtensions.h"

namespace halvorn {
namespace {

// Six minutes in the quality of a compact disc; nobody waits that long for an alert.
constexpr std::size_t kSoundFileLimit = std::size_t{64} << 20;

Text nameOfSound(const Text& path) { return Paths::deletingExtension(Paths::lastComponent(path)); }

OptionalText firstWithName(const std::vector<Text>& paths, const Text& name) {
  const auto found =
      std::find_if(paths.begin(), paths.end(), [&](const Text& path) { return nameOfSound(path) == name; });
  return found == paths.end() ? std::nullopt : OptionalText(*found);
}

}  // namespace

const std::set<Text>& SoundExtensions::soundFileExtensions() {
  // KEEP: the quoted ones are file-type codes written as extensions, their quotes and blanks included.
  static const std::set<Text> extensions = {
      "aiff", "AIFF", "'AIFF'", "aif",    "AIF", "aifc", "AIFC",   "wav", "WAV", "'WAVE'", "snd", "SND",
      "au",   "AU",   "'ULAW'", "'ALAW'", "mp3", "MP3",  "'Mp3 '", "ulw", "ULW", "m4p",    "m4a"};
  return extensions;
}

bool SoundExtensions::isSoundFileAtPath(const Text& path) {
  return soundFileExtensions().contains(Paths::extension(path));
}

std::vector<Text> SoundExtensions::applicationSoundFiles() const {
  std::vector<Text> paths = services_.bundles.resourcePaths(services_.bundles.mainBundlePath());
  std::erase_if(paths, [](const Text& path) { return !isSoundFileAtPath(path); });
  return paths;
}

std::vector<Text> SoundExtensions::applicationSounds() const {
  std::vector<Text> names;
  for (const Text& path : applicationSoundFiles()) {
    Text name = nameOfSound(path);
    if (name != Text("SoundOfSilence")) names.push_back(std::move(name));
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::vector<Text> SoundExtensions::systemSoundFiles() const {
  std::vector<Text> folders = {"/System/Library/Sounds", "/Library/Sounds",
                               Paths::expandingTilde("~/Library/Sounds", services_.searchPaths.homeFolder())};
  for (const Text& folder : services_.searchPaths.soundFolders()) folders.push_back(folder);

  std::vector<Text> paths;
  for (const Text& folder : folders) {
    if (!services_.files.isDirectory(folder)) continue;
    const auto names = services_.files.contentsOfDirectory(folder);
    if (!names) continue;
    for (const Text& name : *names) {
      if (isSoundFileAtPath(name)) paths.push_back(Paths::appending(folder, name));
    }
  }
  return paths;
}

std::vector<Text> SoundExtensions::systemSounds() const {
  std::set<Text> names;
  for (const Text& path : systemSoundFiles()) names.insert(nameOfSound(path));
  return {names.begin(), names.end()};
}

OptionalText SoundExtensions::pathOfSound(const Text& name) const {
  if (OptionalText path = firstWithName(applicationSoundFiles(), name)) return path;
  return firstWithName(systemSoundFiles(), name);
}

SoundPointer SoundExtensions::soundNamed(const Text& name) const {
  const bool logs = services_.defaults.boolForKey("soundLog");
  const OptionalText path = pathOfSound(name);
  if (!path) {
    if (logs) services_.log("+SL: no sound named %@", name);
    return nullptr;
  }
  const auto data = services_.files.readFile(*path, kSoundFileLimit);
  if (!data) {
    if (logs) services_.log("+SL: sound %@ cannot be read", *path);
    return nullptr;
  }
  const Sounds::Result result = services_.sounds.soundWithData(*path, *data);
  if (!result.sound && logs) services_.log("+SL: sound %@ cannot be played: %@", *path, result.problem);
  return result.sound;
}

}  // namespace halvorn
