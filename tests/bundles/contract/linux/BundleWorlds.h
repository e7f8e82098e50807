// What the cases of the contract are asked of on Linux: a desktop that a test writes down, and one on the disk.
#pragma once

#include <gtest/gtest.h>

#include <memory>

#include "Platform/bundles/linux/LinuxBundles.h"
#include "Platform/bundles/linux/LinuxDefaults.h"
#include "Platform/bundles/linux/LinuxLocalizedStrings.h"
#include "Platform/bundles/linux/launching/Launcher.h"
#include "Platform/bundles/linux/launching/LinuxWorkspace.h"
#include "Platform/session/linux/XdgFolders.h"
#include "Platform/session/linux/XdgSearchPaths.h"
#include "tests/fakes/FakeBundles.h"
#include "tests/fakes/FakeDefaults.h"
#include "tests/fakes/FakeLocalizedStrings.h"
#include "tests/fakes/FakeSearchPaths.h"
#include "tests/fakes/FakeWorkspace.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestFiles.h"

namespace halvorn {

// A desktop with one bundle, Foo.app (CFBundleSignature FOOO, resource Foo.icns, program Foo), a German table
// with one text, settings of two domains, a login item of the bundle and one whose program is gone.
class FakeWorld {
 public:
  FakeWorld() {
    bundles_.setInfo(bundle(), {{"CFBundleExecutable", "Foo"}, {"CFBundleSignature", "FOOO"}});
    bundles_.addResource(bundle(), "Foo.icns");
    bundles_.propertyLists["/home/anna/.config/com.example.other.plist"] = {{"volume", 0.5}};
    bundles_.bundles[bundle()].executable = bundle() + Text("/Contents/Linux/Foo");
    strings_.translations["Quit"] = "Beenden";
    defaults_.values = {{"nosound", true}, {"count", 0}};
    defaults_.domains["com.example.other"] = {{"volume", 0.5}};
    workspace_.loginItemPaths = {bundle(), std::nullopt};
  }
  Text bundle() const { return "/home/anna/Foo.app"; }
  Text program() const { return bundle() + Text("/Contents/Linux/Foo"); }
  Text home() const { return "/home/anna"; }
  const Bundles& bundles() { return bundles_; }
  const LocalizedStrings& strings() { return strings_; }
  const Defaults& defaults() { return defaults_; }
  const SearchPaths& searchPaths() { return searchPaths_; }
  Workspace& workspace() { return workspace_; }

 private:
  FakeBundles bundles_;
  FakeLocalizedStrings strings_;
  FakeDefaults defaults_;
  FakeSearchPaths searchPaths_;
  FakeWorkspace workspace_;
};

class RealWorld {
 public:
  RealWorld() {
    const std::string foo = bundle().bytes();
    putFile(foo + "/Contents/Info.plist",
            infoPlist(plistEntry("CFBundleExecutable", "Foo") + plistEntry("CFBundleSignature", "FOOO")));
    putFile(foo + "/Contents/Resources/Foo.icns", "icns");
    putFile(foo + "/Contents/Resources/de.lproj/Localizable.strings", "\"Quit\" = \"Beenden\";");
    putFile(foo + "/Contents/Linux/Foo", "#!/bin/sh\n", Executable::Yes);
    putFile(folder_ / ".config/example.plist",
            infoPlist("<key>nosound</key><true/><key>count</key><integer>0</integer>"));
    putFile(folder_ / ".config/com.example.other.plist", infoPlist("<key>volume</key><real>0.5</real>"));
    putFile(folder_ / ".config/autostart/a.desktop",
            "[Desktop Entry]\nExec=" + foo + "/Contents/Linux/Foo\n");
    putFile(folder_ / ".config/autostart/b.desktop", "[Desktop Entry]\nExec=/nonexistent\n");
    strings_ = std::make_unique<LinuxLocalizedStrings>(bundle(), std::vector<Text>{"de"});
  }
  Text bundle() const { return Text(folder_ / "Foo.app"); }
  Text program() const { return bundle() + Text("/Contents/Linux/Foo"); }
  Text home() const { return folder_.path().string(); }
  const Bundles& bundles() { return bundles_; }
  const LocalizedStrings& strings() { return *strings_; }
  const Defaults& defaults() { return defaults_; }
  const SearchPaths& searchPaths() { return searchPaths_; }
  Workspace& workspace() { return workspace_; }

 private:
  TemporaryFolder folder_;
  Environment environment_{Environment::Variables{
      {"HOME", folder_.path().string()}, {"XDG_CONFIG_DIRS", "/nonexistent"}, {"PATH", "/nonexistent"}}};
  XdgFolders folders_{environment_};
  LinuxBundles bundles_{"/usr/bin/test", {}};
  std::unique_ptr<LinuxLocalizedStrings> strings_;
  LinuxDefaults defaults_{folders_, "example", {}};
  XdgSearchPaths searchPaths_{folders_};
  Launcher launcher_{environment_, folders_};
  LinuxWorkspace workspace_{bundles_, folders_, environment_, launcher_, {}};
};

using Worlds = testing::Types<FakeWorld, RealWorld>;

}  // namespace halvorn
