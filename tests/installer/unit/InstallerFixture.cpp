#include "tests/installer/unit/InstallerFixture.h"

namespace halvorn {

InstallerFixture::InstallerFixture() = default;
InstallerFixture::~InstallerFixture() = default;

void InstallerFixture::SetUp() {
  files.addFile("/Volumes/NAS/Foo.app/Contents/Info.plist");
  files.addFolder("/Applications");
  window.introField.text_ = "Installs %@.";
  window.explanationField.text_ = "Click to install %@.";
  window.window.title_ = "Install %@";
  window.checkmarkField.hidden_ = Hidden::No;  // start-up hides it, whatever the description says
  files.addFile("/usr/share/sounds/Done.wav", "RIFF");
  bundles.setInfo(
      product,
      {{"CFBundleSignature", "FOOX"}, {"CFBundleShortVersionString", "1.2"}, {"CFBundleIconFile", "Foo"}});
  bundles.mainBundle = "/Volumes/NAS/Installer.app";
  toolPath = bundles.addResource(bundles.mainBundle, "train");
}

InstallerWinController& InstallerFixture::start(std::vector<Text> arguments) {
  arguments.insert(arguments.begin(), "/installer");
  installers_.push_back(std::make_unique<Installer>(*this, std::move(arguments)));
  InstallerWinController& controller = installers_.back()->controller;
  window.installButton.onClick = [&controller] { controller.install(); };
  window.cancelButton.onClick = [&controller] { controller.cancel(); };
  window.helpButton.onClick = [&controller] { controller.openDocumentation(); };
  controller.awakeFromNib();
  return controller;
}

InstallWorker& InstallerFixture::makeWorker(const std::vector<std::pair<Text, Text>>& arguments) {
  installers_.push_back(std::make_unique<Installer>(*this, std::vector<Text>{"/installer"}));
  Installer& installer = *installers_.back();
  for (const auto& [key, value] : arguments) installer.ownArguments.set(key, value);
  installer.ownWorker = std::make_unique<InstallWorker>(
      installer.services.worker, installer.ownArguments,
      InstallWorker::MainThreadEntries{[](Animate) {}, [](const InstallOutcome&) {}});
  return *installer.ownWorker;
}

FakeApplication& InstallerFixture::addRunning(const char* name, const char (&code)[5], Stubborn stubborn) {
  FakeApplication& running = processes.applications.start(
      {.name = name, .signature = fourCharCode(code), .quitting = FakeApplication::Quitting::Never});
  if (stubborn == Stubborn::QuitsAtSecondRequest) {
    // Both phases of the first request take four seconds each.
    clock.onAdvance = [&running](double seconds) {
      if (seconds > 9.0) running.quitting = FakeApplication::Quitting::WhenAsked;
    };
  }
  return running;
}

InstallerFixture::Installer::Installer(InstallerFixture& fixture, std::vector<Text> argumentList)
    : install{.files = fixture.files, .trash = fixture.trash, .notices = fixture.notices, .log = fixture.log},
      claims(fixture.installersKnowEachOther ? std::make_unique<FakeItemClaims>(fixture.claims)
                                             : std::make_unique<FakeItemClaims>()),
      versions(fixture.bundles, fixture.system, fixture.processes.unicode, fixture.dates, fixture.log),
      theme(versions, fixture.defaults, fixture.interfaceStyle),
      colors(
          {.appearances = fixture.appearances, .theme = theme, .system = fixture.system, .log = fixture.log}),
      destinations({.processes = fixture.processes.processes,
                    .files = fixture.files,
                    .searchPaths = fixture.searchPaths,
                    .workspace = fixture.workspace,
                    .log = fixture.log,
                    .productCodes = [this] { return controller.arguments().list("productCode"); },
                    .randomNumber = [] { return 7u; }}),
      soundExtensions({.sounds = fixture.sounds,
                       .devices = fixture.devices,
                       .searchPaths = fixture.searchPaths,
                       .files = fixture.files,
                       .bundles = fixture.bundles,
                       .defaults = fixture.defaults,
                       .versions = versions,
                       .workers = fixture.workers,
                       .clock = fixture.clock,
                       .log = fixture.log}),
      sound(soundExtensions),
      services{.startup = {.alerts = fixture.alerts,
                           .application = fixture.application,
                           .bundles = fixture.bundles,
                           .claims = *claims,
                           .destinations = destinations,
                           .files = fixture.files,
                           .images = fixture.images,
                           .processes = fixture.processes.processes,
                           .versions = versions,
                           .strings = fixture.strings,
                           .searchPaths = fixture.searchPaths,
                           .streams = fixture.streams,
                           .system = fixture.system,
                           .log = fixture.log},
               .completion = {.application = fixture.application,
                              .clock = fixture.clock,
                              .sound = sound,
                              .defaults = fixture.defaults,
                              .messages = fixture.messages,
                              .strings = fixture.strings,
                              .mainThread = fixture.mainThread,
                              .notices = fixture.desktopNotices,
                              .screenReader = fixture.screenReader,
                              .workspace = fixture.workspace,
                              .log = fixture.log},
               .worker = {.install = install,
                          .destinations = destinations,
                          .processes = fixture.processes.processes,
                          .authorizer = fixture.authorizer,
                          .workspace = fixture.workspace,
                          .changes = fixture.notices,
                          .application = fixture.application,
                          .bundles = fixture.bundles,
                          .copied = fixture.copied,
                          .strings = fixture.strings,
                          .mainThread = fixture.mainThread,
                          .clock = fixture.clock,
                          .departure = fixture.departure,
                          .log = fixture.log,
                          .launch = fixture.launch},
               .progress = {.copied = fixture.copied,
                            .items = fixture.itemSizes,
                            .sizes = fixture.sizes,
                            .strings = fixture.strings,
                            .clock = fixture.clock},
               .application = fixture.application,
               .authorizer = fixture.authorizer,
               .colors = colors,
               .departure = fixture.departure,
               .files = fixture.files,
               .log = fixture.log,
               .screenReader = fixture.screenReader,
               .strings = fixture.strings,
               .workers = fixture.workers,
               .workspace = fixture.workspace},
      controller(services, fixture.window.outlets(), std::move(argumentList)) {}

}  // namespace halvorn
