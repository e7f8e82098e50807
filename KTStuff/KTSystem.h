// The class library on this system, in one object: it owns what the system is asked through, and hands out the classes
// that are made of it.
//
//   int main(int count, char** arguments) {
//     KTSystem system({arguments, arguments + count});
//     for (const KTProcessPointer& process : system.processes().allProcesses()) ...
//     if (system.versions().compareVersion("2.1b3", "2.1") == Ordering::Ascending) ...
//   }
//
// Nothing is connected, loaded, started or read before it is asked for; what was made once stays until the object goes.
// An answer that the system does not have is the unknown one of its class: a machine without sound plays nothing, a
// session without a display has no windows.
//
// A function is found in the part of the library it belongs to: a program that is linked with KTStuff::Text alone can
// ask for texts and calls nothing else.
//
// Thread: main, for asking the first time; what is handed out says itself where it may be used. One object for each
// program; what it handed out must not be used after it.
// Why: docs/decisions/031-one-object-owns-the-system.md
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "Core/Text.h"

namespace halvorn {

class Accessibility;
class Appearances;
class Application;
class AudioDevices;
class Bundles;
class Clock;
class Defaults;
class DesktopFacts;
class Digests;
class FileHandles;
class FileManager;
class FourCharCodes;
class HtmlText;
class Images;
class InterfaceStyleSetting;
class ItemFacts;
class KTDynamicColorClass;
class KTProcessClass;
class KTRegularExpression;
class KTUtilities;
class KTUtilitiesTheme;
class KTUtilitiesVersions;
class Keyboard;
class LaunchContext;
class LocalizedDates;
class LocalizedStrings;
class Log;
class MainThread;
class Notifications;
class SearchPaths;
class SoundExtensions;
class SystemFacts;
class Tasks;
class TemporaryFiles;
class TextCodecs;
class Unicode;
class Workers;
class Workspace;

namespace StringExtensions {
class RegexReplacing;
class VirtualCharacters;
}  // namespace StringExtensions

// Whether each running program may be held by a descriptor of its own, for which the limit of open files is raised;
// what is launched gets the limit as it was.
enum class HoldManyProcesses { No, Yes };

// What a program may say of itself; each has a good answer where nothing is said.
struct KTSystemSettings {
  // In the log and in lists of sounds; else the program's file name.
  Text programName = {};
  // Under which its settings are kept; else that of the bundle, else the program's name.
  Text identifier = {};
  // With what is loaded when it is needed; else the program's folder, or that of the library.
  Text modulesFolder = {};
  HoldManyProcesses holdManyProcesses = HoldManyProcesses::No;  // for lists that stay
};

class KTSystem {
 public:
  // The arguments of the program, its path the first: settings are read from them ("-AppleLanguages", "-key value").
  explicit KTSystem(std::vector<Text> arguments = {}, KTSystemSettings settings = {});
  // Waits for what still works in the background; sound is cut off.
  ~KTSystem();
  KTSystem(const KTSystem&) = delete;
  KTSystem& operator=(const KTSystem&) = delete;

  // --- texts (KTStuff::Text)

  [[nodiscard]] const Log& log();                                 // of this program
  [[nodiscard]] Clock& clock();                                   // time, and waiting
  [[nodiscard]] FileManager& files();                             // asking, copying, moving, removing
  [[nodiscard]] const FileHandles& fileHandles();                 // writing behind what a file holds
  [[nodiscard]] const Unicode& unicode();                         // letters, case, order
  [[nodiscard]] const LocalizedDates& dates();                    // as the person writes them
  [[nodiscard]] const Digests& digests();                         // MD5; loaded at the first one
  [[nodiscard]] const TextCodecs& textCodecs();                   // encodings
  [[nodiscard]] const KTRegularExpression& regularExpressions();  // matching
  [[nodiscard]] const StringExtensions::RegexReplacing& regexReplacing();  // replacing by patterns
  [[nodiscard]] StringExtensions::VirtualCharacters& virtualCharacters();  // what keys type, remembered
  [[nodiscard]] const FourCharCodes& fourCharCodes();                      // signatures as texts
  [[nodiscard]] const HtmlText& htmlText();                                // markup and its entities
  [[nodiscard]] const Keyboard& keyboard();                                // the layout in use

  // --- programs, their settings and texts (KTStuff::Bundles)

  [[nodiscard]] const Bundles& bundles();           // folders that are programs, and the one of this program
  [[nodiscard]] const LocalizedStrings& strings();  // of the main bundle
  [[nodiscard]] const Defaults& defaults();         // the person's settings of this program
  [[nodiscard]] const SearchPaths& searchPaths();   // where people and the system keep things
  [[nodiscard]] const SystemFacts& systemFacts();   // version, debugger, file systems
  [[nodiscard]] const ItemFacts& items();           // what a file is to the desktop
  [[nodiscard]] const KTUtilitiesVersions& versions();  // and their order
  [[nodiscard]] Workspace& workspace();                 // opening, and registering programs
  [[nodiscard]] TemporaryFiles& temporaryFiles();       // that nobody else can guess
  [[nodiscard]] Tasks& tasks();                         // programs started and watched
  [[nodiscard]] Workers& workers();                     // threads in the background

  // --- the main thread (KTStuff::Bundles)

  [[nodiscard]] MainThread& mainThread();  // tasks for later
  // Serves the main thread until the condition holds, asked after each thing done; false when that many seconds were
  // over first.
  bool runUntil(const std::function<bool()>& condition, double seconds);

  // --- processes (KTStuff::Process)

  [[nodiscard]] KTProcessClass& processes();           // running programs
  [[nodiscard]] Notifications& notifications();        // what was told is heard there
  [[nodiscard]] Accessibility& accessibility();        // other programs' interfaces
  [[nodiscard]] const LaunchContext& launchContext();  // who started this program

  // --- sound (KTStuff::Sound)

  [[nodiscard]] SoundExtensions& sound();            // finding and playing
  [[nodiscard]] const AudioDevices& audioDevices();  // where it comes out

  // --- how things look (KTStuff::Appearance)

  // The toolkit's application, on whose event loop everything works from then on: it is asked for first, before
  // anything that needs the main thread. Needs a display. A program that has made a QApplication itself, before this
  // object, keeps it: that one is used, and nothing of it is changed.
  [[nodiscard]] Application& application();
  // Pictures of the main bundle, of files and of programs; without an application only those that are read from files.
  [[nodiscard]] Images& images();
  [[nodiscard]] const Appearances& appearances();         // light and dark of what is drawn
  [[nodiscard]] InterfaceStyleSetting& interfaceStyle();  // light or dark, as the person chose
  [[nodiscard]] KTUtilitiesTheme& theme();                // the style as programs ask for it
  [[nodiscard]] KTDynamicColorClass& colors();            // one for light and dark

  // --- everything (KTStuff::KTStuff)

  [[nodiscard]] DesktopFacts& desktopFacts();  // idle time, clipboard, menu bar
  [[nodiscard]] KTUtilities& utilities();      // all utilities in one

  // Cuts off sound and waits for the workers, as the end of the object does.
  void finish();

  // For what is made of the same parts, in this library alone.
  class Parts;
  [[nodiscard]] Parts& parts() { return *parts_; }

 private:
  std::unique_ptr<Parts> parts_;
};

}  // namespace halvorn
