// The command-line keys of the installer. Products that start it link against
// these, so both sides spell them alike.
//
// On the command line a key stands with a leading "-", followed by its value; a key that ends in "Code" takes
// any number of values: -productName "Foo Bar" -quitCode ABCD EFGH
#pragma once

namespace halvorn {

extern const char KTInstallerKeyProductName[];        // display name of the product
extern const char KTInstallerKeyVersion[];            // version shown after the name
extern const char KTInstallerKeyMinSystemVersion[];   // lowest system version the product runs on
extern const char KTInstallerKeySourcePath[];         // the application bundle to be installed
extern const char KTInstallerKeyDestinationPath[];    // where to, bundle name included
extern const char KTInstallerKeyDocumentationPath[];  // file that the help button opens
extern const char KTInstallerKeyReadMePath[];         // document shown before the install page
extern const char KTInstallerKeyProductCode[];        // signatures of the product (list)
extern const char KTInstallerKeyQuitCode[];           // signatures of what must not run meanwhile (list)
extern const char KTInstallerKeyIconPath[];           // image file for the product icon
extern const char KTInstallerKeyWrapperPath[];        // folder of accompanying items around the source bundle
extern const char KTInstallerCompletionSound[];       // "YES": play the completion sound
extern const char KTInstallerCompletionQuit[];        // seconds after which the installer quits by itself

}  // namespace halvorn
