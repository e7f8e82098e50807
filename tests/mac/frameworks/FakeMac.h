// A made-up macOS behind the frameworks' own functions: what tests put into it, and what was asked of it.
//
//   fakemac::reset();
//   fakemac::start({.name = "Editor", .signature = 'EDIT', .path = "/Applications/Editor.app"});
//   EXPECT_EQ(fakemac::liveObjects(), 0);
//
// Thread: main. Plain C++, so that tests are compiled by either compiler.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace fakemac {

struct Number {
  std::uint32_t high = 0;
  std::uint32_t low = 0;
  friend bool operator==(const Number&, const Number&) = default;
};

struct Application {
  enum class Quitting { WhenAsked, OnlyByForce };

  std::string name;                      // bytes of Mac OS Roman
  std::uint32_t signature = 0x3F3F3F3F;  // what a program has that declares none
  std::string path = {};                 // of its bundle; "": no location is known
  std::map<std::string, std::string> information = {};
  std::string displayName = {};  // "": CopyProcessName fails
  Quitting quitting = Quitting::WhenAsked;
  std::int32_t pid = 0;  // 0: the next free one
  double startSeconds = 1'600'000'000.25;
  bool isAccessible = true;
  Number launcher = {};

  Number number = {};
  bool hasEnded = false;
  // In order: "terminate", "forceTerminate", "front", "front window", "hide", "show", "wake".
  std::vector<std::string> requests = {};
};

enum class PageReader { Reads, Refuses, Raises };

struct ImportedPage {  // what the reader of HTML was given
  std::string bytes;
  std::string encoding;
  double seconds = 0;
  bool wasOnMainThread = false;
  int resourcesLoaded = 0;
};

struct SentEvent {
  std::uint32_t eventClass = 0;
  std::uint32_t eventID = 0;
  Number target;
  std::int32_t mode = 0;
  std::int16_t priority = 0;
  std::int32_t timeoutTicks = 0;
};

struct AudioDevice {
  std::uint32_t id = 0;
  std::string name;
  std::string maker;
  std::string uid;
};

struct Color {
  double red = 0;
  double green = 0;
  double blue = 0;
  double alpha = 0;
};

struct State {
  std::deque<Application> applications;  // references stay valid
  std::optional<Number> front;
  std::deque<std::uint32_t> happened;  // kinds of application events that no handler was told yet
  std::int32_t eventStatus = 0;        // what sending answers
  std::int32_t descriptorStatus = 0;
  std::int32_t creationStatus = 0;
  std::vector<SentEvent> sentEvents;
  bool refusesObservers = false;
  bool refusesNotifications = false;
  bool raisesExceptions = false;  // in what is asked of objects
  bool isDebugged = false;

  std::int32_t authorizationCreation = 0;
  std::int32_t authorizationAnswer = 0;
  std::vector<std::pair<std::string, std::uint32_t>> rightsAsked;  // with the flags
  std::function<void()> onRightsAsked;                             // while the dialog is shown

  std::vector<AudioDevice> audioDevices = {{41, "Speakers", "Acme", "speakers"},
                                           {42, "Headphones", "Bolt", "headphones"}};
  std::uint32_t alertDevice = 41;
  bool hasAudio = true;
  bool deviceVanishes = false;  // between the question for the size and that for the list
  std::vector<std::uint32_t> scopesAsked;
  int liveSounds = 0;
  std::vector<std::string> playLog;  // "play at 1.00 on speakers", "cut off"

  bool refusesHandlers = false;
  bool registryFails = false;
  bool hasInputService = true;
  bool propertiesFail = false;
  std::optional<std::int64_t> idleNanoseconds = 1'500'000'000;
  bool idleIsText = false;
  std::int64_t pasteboardChanges = 7;
  int controlTint = 1;
  std::map<std::uint32_t, std::int32_t> gestalt = {
      {0x73797331, 10}, {0x73797332, 13}, {0x73797333, 6}, {0x73797376, 0x1096}};  // sys1, sys2, sys3, sysv
  std::map<std::string, std::string> settings;  // of the person, in all domains

  std::vector<std::string> announcements;
  bool hasRealPictures = false;          // for programs with windows
  std::string copyGate;                  // the engine waits until there is an item at that path
  std::vector<std::uint32_t> copyFlags;  // of each copy that the engine was asked for
  std::string homeFolder;                // "": that of the account
  std::string trashFolder = "/nonexistent";
  int recycleOperations = 0;
  bool refusesRecycling = false;
  std::vector<std::string> changesNoted;

  std::vector<std::string> referenced;         // the paths that file references stand for
  std::map<std::string, std::string> aliases;  // files that are aliases, by path
  std::map<std::string, std::map<std::pair<std::uint32_t, std::int16_t>, std::string>> resourceForks;
  int currentResourceFile = 2;
  std::map<std::string, std::uint32_t>
      itemFlags;  // what Launch Services say of a path; others are asked of the disk
  std::vector<std::uint32_t> itemQuestions;
  bool hasLoginItems = true;
  std::vector<std::optional<std::string>> loginItems;
  std::int32_t registration = 0;
  std::vector<std::string> registered;  // URLs
  std::vector<std::string> opened;      // paths and URLs
  bool refusesOpening = false;
  bool hasIcons = true;
  std::vector<std::string> languages = {"en"};
  std::string mainBundlePath;  // "": that of the test
  // Settings of a domain ("": what the program sees) as property lists: "<true/>".
  std::map<std::string, std::map<std::string, std::string>> domains;

  std::string currentAppearance = {};  // "Aqua", "DarkAqua"; "": nothing is drawn
  std::string applicationAppearance = "Aqua";
  int liveAppearances = 0;
  int liveRunningApplications = 0;
  Color strokeColor;
  Color fillColor;

  bool hasKeyboardLayout = true;
  bool layoutHasData = true;
  std::uint32_t keyboardType = 40;
  std::map<std::pair<std::uint16_t, std::uint32_t>, std::u16string> keys;  // by key code and modifiers
  std::vector<std::uint32_t> keyboardTypesAsked;

  PageReader readsPages = PageReader::Reads;
  std::vector<ImportedPage> importedPages;
};

[[nodiscard]] State& state();
// A new system with this program running in it as "Installer", pid 100.
void reset();

// Starts and ends an application. Handlers are told when the test serves.
Application& start(Application application);
void end(Application& application);
// Brings what happened to the handlers, as the run loop does.
void serve();
[[nodiscard]] Application* withPid(std::int32_t pid);

// Has the handlers that are installed for it called with an event of that class and kind; the last status.
std::int32_t deliver(std::uint32_t eventClass, std::uint32_t kind);
// Has the observers told that watch the application's element for the notification and stand in the run loop.
// Without an element the call-back is given none.
void notify(std::int32_t pid, const std::string& notification, bool withElement = true);

// Posts a notification of the desktop.
void postDistributed(const std::string& name);

// Lets what plays come to its end.
void finishSounds();

// The sheet that a window has, and its end by one of its buttons, the first 0; -1: in another way.
[[nodiscard]] bool sheetIsUp();
void endSheet(int button);
// What it says: the message, what informs, and its buttons.
[[nodiscard]] std::vector<std::string> sheetTexts();

// Whether something that was set through an animator is not reached yet; and its end.
[[nodiscard]] bool isAnimating();
void finishAnimations();

// Observers of notifications, of this program's own, that were not taken out.
[[nodiscard]] std::size_t installedObservers();
// Handlers installed and not removed.
[[nodiscard]] std::size_t installedHandlers();
// Of what functions named Create, Copy or New gave: what is not released yet.
[[nodiscard]] int liveObjects();

}  // namespace fakemac
