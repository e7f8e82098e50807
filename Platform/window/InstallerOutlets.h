// The outlets of the installer window, by their names in the interface description.
//
// The outlets belong to whoever made the window and live as long as it; the
// controller only holds this struct.
#pragma once

#include "Platform/window/Views.h"

namespace halvorn {

struct InstallerOutlets {
  Window& window;               // around all of them
  TabView& tabView;             // 0 the read-me page, 1 the install page
  TextField& nameField;         // product name and version
  TextField& introField;        // introduction, later the final message; at first a format with one "%@"
  TextField& pathField;         // where the product will be
  TextField& explanationField;  // what will happen; at first a format with one "%@"
  TextField& messageField;      // text of a failure
  ImageView& iconField;         // product icon
  ImageView& checkmarkField;    // success mark
  TextView& readMeTextView;     // the document
  Button& installButton;        // the default button: "Continue", "Install" or "OK"
  Button& cancelButton;         // "Cancel" or "Go Back"
  Button& helpButton;           // "?"
  ProgressIndicator& progressIndicator;  // turns while it works
};

}  // namespace halvorn
