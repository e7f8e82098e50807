#include "Platform/bundles/linux/launching/BundleRegistration.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "Core/Paths.h"
#include "Platform/bundles/Bundles.h"
#include "Platform/bundles/linux/BundleFolder.h"
#include "Platform/bundles/linux/BundleIcon.h"
#include "Platform/bundles/linux/DisplayNames.h"
#include "Platform/bundles/linux/LinuxLocalizedStrings.h"
#include "Platform/bundles/linux/launching/DesktopEntry.h"
#include "Platform/bundles/linux/launching/Launcher.h"
#include "Platform/bundles/linux/launching/WrittenFiles.h"
#include "Platform/files/posix/BoundedFile.h"
#include "Platform/session/linux/XdgFolders.h"

namespace halvorn {
namespace {

constexpr char kPrefix[] = "halvorn-app-";
constexpr std::size_t kLongestIdentifier =
    50;  // bytes kept as they are or escaped; longer ones end in a number
constexpr std::size_t kLargestIcon = 16UL * 1024 * 1024;
constexpr std::size_t kMostLanguages = 256;
constexpr double kRefreshSeconds = 10.0;
// Those for which the hicolor theme has folders.
constexpr int kIconSizes[] = {16, 22, 24, 32, 36, 48, 64, 72, 96, 128, 192, 256, 512};

bool isPlainCharacter(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
         (character >= '0' && character <= '9') || character == '-' || character == '.';
}

// FNV-1a: the same number for the same text wherever and whenever it is asked.
std::uint64_t stableHash(const std::string& text) {
  std::uint64_t hash = 0xCBF29CE484222325;
  for (const char character : text) hash = (hash ^ static_cast<unsigned char>(character)) * 0x100000001B3;
  return hash;
}

// A file name of letters, digits, points and hyphens; different texts give different names.
std::string fileNameFor(const std::string& identifier) {
  std::string result = kPrefix;
  for (const char character : identifier.substr(0, kLongestIdentifier)) {
    if (isPlainCharacter(character)) {
      result.push_back(character);
      continue;
    }
    constexpr char kDigits[] = "0123456789abcdef";
    const auto byte = static_cast<unsigned char>(character);
    result.append({'_', kDigits[byte >> 4], kDigits[byte & 0x0F]});
  }
  if (identifier.size() > kLongestIdentifier) {
    result.append("_").append(std::to_string(stableHash(identifier)));
  }
  return result;
}

bool isUtf8(const Text& text) { return Text::fromStrictUtf8(text.bytes()).has_value(); }

// Whether an entry can name the program: in UTF-8, and without control characters but
// those that have a way to be written.
bool canBeWritten(const Text& program) {
  const std::u16string_view units = program.units();
  return isUtf8(program) && std::none_of(units.begin(), units.end(), [](char16_t unit) {
           const bool hasEscape = unit == u'\n' || unit == u'\t' || unit == u'\r';
           return (unit < u' ' && !hasEscape) || unit == 0x7F;
         });
}

// On one line and fit for a file that must be UTF-8.
std::string nameForEntry(const Text& name) {
  std::u16string units(name.units());
  for (char16_t& unit : units) {
    const bool isControl = unit < 0x20 || (unit >= 0x7F && unit < 0xA0) || unit == 0x2028 || unit == 0x2029;
    if (isControl) unit = u' ';
  }
  const Text cleaned = Text(std::move(units)).trimmed();
  return isUtf8(cleaned) ? escapedValue(cleaned.bytes()) : std::string();
}

bool isPlainLanguage(const std::string& name) {
  return !name.empty() && name.size() <= 16 && std::all_of(name.begin(), name.end(), [](char character) {
    return character == '_' || isPlainCharacter(character);
  });
}

// The locale of an entry for a bundle's folder: "pt-BR" -> "pt_BR", "sr_Latn" -> "sr@latin".
std::string localeForEntry(const std::string& folder) {
  constexpr std::pair<const char*, const char*> kScripts[] = {
      {"_Latn", "@latin"}, {"_Cyrl", "@cyrillic"}, {"_Hans", "_CN"}, {"_Hant", "_TW"}};
  const Text language = Text(folder).replacing("-", "_");
  for (const auto& [script, locale] : kScripts) {
    if (language.hasSuffix(script)) return language.replacing(script, locale).bytes();
  }
  return language.bytes();
}

// Some desktops look for the program under its name as it is written, percent signs still doubled, and take
// the entry for one whose program is gone. So there a shell starts it, as its argument.
std::string execFor(const std::string& program) {
  if (program.find('%') == std::string::npos) return quotedForExec(program);
  return "sh -c " + quotedForExec("exec \"$0\"") + " " + quotedForExec(program);
}

std::string entryFor(const std::map<std::string, std::string>& names, const std::string& program,
                     const std::string& iconName) {
  std::string entry = "[Desktop Entry]\nType=Application\n";
  for (const auto& [language, name] : names) {
    entry += (language.empty() ? "Name=" : "Name[" + language + "]=") + name + "\n";
  }
  entry += "Exec=" + escapedValue(execFor(program)) + "\n";
  // Desktops show the entry only as long as the program is there.
  entry += "TryExec=" + escapedValue(program) + "\n";
  if (!iconName.empty()) entry += "Icon=" + iconName + "\n";
  // By that desktops know whose a window is: toolkits call the application like its program.
  entry += "StartupWMClass=" + escapedValue(program.substr(program.rfind('/') + 1)) + "\n";
  return entry + "Terminal=false\n";
}

std::string entryNameFor(const Text& bundlePath, const PropertyDictionary& info) {
  const Text fileName = Paths::lastComponent(Paths::deletingExtension(bundlePath));
  return fileNameFor(textForKey(info, "CFBundleIdentifier").value_or(fileName).bytes());
}

std::string entryPathIn(const XdgFolders& folders, const std::string& entryName) {
  return folders.dataHome() + "/applications/" + entryName + ".desktop";
}

std::string themeIn(const XdgFolders& folders) { return folders.dataHome() + "/icons/hicolor"; }

std::string iconPathIn(const std::string& theme, int size, const std::string& iconName) {
  const std::string name = std::to_string(size) + "x" + std::to_string(size);
  return theme + "/" + name + "/apps/" + iconName + ".png";
}

int folderSizeFor(int size) {
  const int* const above = std::upper_bound(std::begin(kIconSizes), std::end(kIconSizes), size);
  return above == std::begin(kIconSizes) ? 0 : *(above - 1);
}

// By size of the folder each belongs into; of several for one folder, the largest.
std::map<int, IconPicture> picturesByFolder(std::vector<IconPicture> pictures) {
  std::map<int, IconPicture> result;
  for (IconPicture& picture : pictures) {
    const int folder = folderSizeFor(picture.size);
    // Pictures too large for any folder are scaled down by the desktop, but never hide one that fits.
    const bool isBetter =
        !result.contains(folder) || (result[folder].size != folder && picture.size == folder);
    if (folder > 0 && isBetter) result.insert_or_assign(folder, std::move(picture));
  }
  return result;
}

}  // namespace

std::map<std::string, std::string> entryNamesOf(const Text& bundlePath, const PropertyDictionary& info) {
  const auto bundle = BundleFolder::at(bundlePath);
  std::map<std::string, std::string> names;
  names[""] = nameForEntry(Paths::lastComponent(Paths::deletingExtension(bundlePath)));
  const auto resources = bundle ? bundle->find(bundle->resources()) : std::nullopt;
  if (!resources || !hasOwnFileName(bundlePath, info)) return names;
  for (const std::string& entry : folderEntries(*resources)) {
    const std::string language = entry.substr(0, entry.rfind('.'));
    const bool isLanguage = entry.ends_with(".lproj") && isPlainLanguage(language);
    if (!isLanguage || names.size() > kMostLanguages) continue;
    const auto table = readStringTableOf(*bundle, Text(language), "InfoPlist");
    const OptionalText name = table ? bundleNameIn(*table) : std::nullopt;
    const std::string written = name ? nameForEntry(*name) : std::string();
    if (!written.empty()) names[localeForEntry(language)] = written;
  }
  return names;
}

BundleRegistration::BundleRegistration(const Bundles& bundles, const XdgFolders& folders,
                                       const Launcher& launcher, IconDrawing drawing)
    : bundles_(bundles), folders_(folders), launcher_(launcher), drawing_(std::move(drawing)) {}

int BundleRegistration::registerBundle(const Text& bundlePath) const {
  if (!findItem(bundlePath.bytes())) return RegistrationStatus::kNotFound;
  const OptionalText program = bundles_.executablePath(bundlePath);
  if (!program || Paths::extension(bundlePath) != Text("app")) return RegistrationStatus::kNotAnApplication;
  if (!Paths::isAbsolute(bundlePath) || !canBeWritten(*program)) return RegistrationStatus::kUnusablePath;
  const PropertyDictionary info = bundles_.infoDictionary(bundlePath).value_or(PropertyDictionary());
  const std::map<std::string, std::string> names = entryNamesOf(bundlePath, info);
  if (names.at("").empty()) return RegistrationStatus::kUnusablePath;

  const std::string entryName = entryNameFor(bundlePath, info);
  const std::string iconName = installIcons(bundlePath, entryName);
  const std::string entryPath = entryPathIn(folders_, entryName);
  if (!writeFileAtomically(entryPath, entryFor(names, program->bytes(), iconName))) {
    return RegistrationStatus::kNotWritten;
  }
  refreshDatabase();
  return RegistrationStatus::kRegistered;
}

std::vector<std::string> BundleRegistration::filesOf(const Text& bundlePath) const {
  const PropertyDictionary info = bundles_.infoDictionary(bundlePath).value_or(PropertyDictionary());
  const std::string name = entryNameFor(bundlePath, info);
  const std::string path = entryPathIn(folders_, name);
  const auto entry = DesktopEntry::read(path);
  const std::string program = entry ? entry->value("TryExec").value_or("") : std::string();
  if (!program.starts_with(bundlePath.bytes() + "/")) return {};
  std::vector<std::string> files = {path};
  for (const int size : kIconSizes) {
    const std::string icon = iconPathIn(themeIn(folders_), size, name);
    if (findItem(icon)) files.push_back(icon);
  }
  return files;
}

std::vector<IconPicture> BundleRegistration::picturesOf(const Text& bundlePath) const {
  const OptionalText icon = bundleIconFile(bundles_, bundlePath);
  const auto bytes = icon ? readRegularFile(icon->bytes(), kLargestIcon) : std::nullopt;
  if (!bytes) return {};
  std::vector<IconPicture> pictures = picturesInIcon(*bytes);
  return pictures.empty() && drawing_ ? drawing_(*bytes) : pictures;
}

std::string BundleRegistration::installIcons(const Text& bundlePath, const std::string& iconName) const {
  const auto pictures = picturesByFolder(picturesOf(bundlePath));
  const std::string theme = themeIn(folders_);
  bool hasIcon = false;
  for (const int size : kIconSizes) {
    const std::string path = iconPathIn(theme, size, iconName);
    const auto picture = pictures.find(size);
    // What an earlier version left would otherwise stay beside the new pictures.
    if (picture == pictures.end()) {
      removeFile(path);
    } else {
      hasIcon = writeFileAtomically(path, picture->second.png) || hasIcon;
    }
  }
  // Tells icon caches that they are out of date.
  if (hasIcon) touch(theme);
  return hasIcon ? iconName : std::string();
}

void BundleRegistration::refreshDatabase() const {
  const std::string tool = launcher_.find("update-desktop-database");
  if (!tool.empty())
    (void)launcher_.run(tool, {"-q", folders_.dataHome() + "/applications"}, kRefreshSeconds);
}

Text pathFromUrlText(const Text& urlText) {
  if (!urlText.hasPrefix("file://")) return urlText;
  const std::string escaped = urlText.substring(7).bytes();
  std::string path;
  for (std::size_t i = 0; i < escaped.size(); ++i) {
    const auto digit = [&](std::size_t at) -> int {
      const std::size_t found =
          at < escaped.size() ? std::string("0123456789abcdefABCDEF").find(escaped[at]) : std::string::npos;
      if (found == std::string::npos) return -1;
      return static_cast<int>(found < 16 ? found : found - 6);
    };
    if (escaped[i] == '%' && digit(i + 1) >= 0 && digit(i + 2) >= 0) {
      path.push_back(static_cast<char>(digit(i + 1) << 4 | digit(i + 2)));
      i += 2;
    } else {
      path.push_back(escaped[i]);
    }
  }
  return path;
}

}  // namespace halvorn
