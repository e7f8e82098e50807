#include "tools/halvorn/TerminalFace.h"

namespace halvorn {

TerminalFace::TerminalFace(std::map<std::string, Text> texts) {
  window.setTitle(texts["window"]);
  introField.setStringValue(texts["introField"]);
  explanationField.setStringValue(texts["explanationField"]);
}

InstallerOutlets TerminalFace::outlets() {
  return {.window = window,
          .tabView = tabs,
          .nameField = nameField,
          .introField = introField,
          .pathField = pathField,
          .explanationField = explanationField,
          .messageField = messageField,
          .iconField = iconField,
          .checkmarkField = checkmarkField,
          .readMeTextView = readMeTextView,
          .installButton = installButton,
          .cancelButton = cancelButton,
          .helpButton = helpButton,
          .progressIndicator = progress};
}

}  // namespace halvorn
