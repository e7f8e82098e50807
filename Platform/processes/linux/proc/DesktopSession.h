// To which desktop session a process belongs.
#pragma once

#include <string>
#include <vector>

namespace halvorn {

// What the environment of a program says of its session; empty where it says nothing.
struct DesktopSession {
  std::string sessionId;      // of the login manager
  std::string display;        // of the X server, without the screen
  std::string waylandSocket;  // of the compositor, as waylandSocketPath() tells it

  // From "NAME=value".
  [[nodiscard]] static DesktopSession from(const std::vector<std::string>& environment);
  // Of this program.
  [[nodiscard]] static DesktopSession ofThisProgram();

  // Whether anything can differ from it.
  [[nodiscard]] bool isNamed() const;
  // True only when both name a session of the same kind and not the same one, or one is on an X display alone
  // and the other on a compositor alone: what is not told is no evidence.
  [[nodiscard]] bool differsFrom(const DesktopSession& other) const;
};

}  // namespace halvorn
