// The macOS that the installer finds when it runs here: what the environment says of it.
//
//   HALVORN_MAC_BUNDLE    the installer's bundle
//   HALVORN_MAC_GATE      a path at which an item must be before anything is copied
//   HALVORN_MAC_LANGUAGE  "de"; else English
//   HOME                  with the Trash in it
#include <cstdlib>
#include <string>

#include "tests/mac/frameworks/FakeMac.h"

namespace halvorn {
namespace {

std::string variable(const char* name) {
  const char* const value = std::getenv(name);
  return value != nullptr ? value : "";
}

// Before the program itself begins.
const bool isMadeUp = [] {
  fakemac::reset();
  fakemac::State& state = fakemac::state();
  state.mainBundlePath = variable("HALVORN_MAC_BUNDLE");
  state.copyGate = variable("HALVORN_MAC_GATE");
  state.homeFolder = variable("HOME");
  state.trashFolder = variable("HOME") + "/.Trash";
  if (!variable("HALVORN_MAC_LANGUAGE").empty()) state.languages = {variable("HALVORN_MAC_LANGUAGE"), "en"};
  state.hasRealPictures = true;
  return true;
}();

}  // namespace
}  // namespace halvorn
