// What the cases of the contract are asked of on macOS: the adapters, on a disk and with settings that a test makes up.
#pragma once

#include <gtest/gtest.h>

#include "Platform/bundles/mac/MacBundles.h"
#include "Platform/bundles/mac/MacDefaults.h"
#include "Platform/bundles/mac/MacLocalizedStrings.h"
#include "Platform/bundles/mac/MacWorkspace.h"
#include "Platform/files/mac/MacSearchPaths.h"
#include "tests/mac/frameworks/FakeMac.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestFiles.h"

namespace halvorn {

class MacWorld {
 public:
  MacWorld() {
    fakemac::reset();
    const std::string foo = bundle().bytes();
    putFile(foo + "/Contents/Info.plist",
            infoPlist(plistEntry("CFBundleExecutable", "Foo") + plistEntry("CFBundleSignature", "FOOO")));
    putFile(foo + "/Contents/Resources/Foo.icns", "icns");
    putFile(foo + "/Contents/Resources/de.lproj/Localizable.strings", "\"Quit\" = \"Beenden\";");
    putFile(foo + "/Contents/MacOS/Foo", "#!/bin/sh\n", Executable::Yes);
    putFile(folder_ / ".config/com.example.other.plist", infoPlist("<key>volume</key><real>0.5</real>"));
    fakemac::state().homeFolder = folder_.path().string();
    fakemac::state().languages = {"de", "en"};
    fakemac::state().domains = {{"", {{"nosound", "<true/>"}, {"count", "<integer>0</integer>"}}},
                                {"com.example.other", {{"volume", "<real>0.5</real>"}}}};
    fakemac::state().loginItems = {foo, std::nullopt};
  }
  ~MacWorld() { EXPECT_EQ(fakemac::liveObjects(), 0); }
  Text bundle() const { return Text(folder_ / "Foo.app"); }
  Text program() const { return bundle() + Text("/Contents/MacOS/Foo"); }
  Text home() const { return folder_.path().string(); }
  const Bundles& bundles() { return bundles_; }
  const LocalizedStrings& strings() { return strings_; }
  const Defaults& defaults() { return defaults_; }
  const SearchPaths& searchPaths() { return searchPaths_; }
  Workspace& workspace() { return workspace_; }

 private:
  TemporaryFolder folder_;
  MacBundles bundles_;
  MacLocalizedStrings strings_{bundle()};
  MacDefaults defaults_;
  MacSearchPaths searchPaths_;
  MacWorkspace workspace_;
};
using Worlds = testing::Types<MacWorld>;

}  // namespace halvorn
