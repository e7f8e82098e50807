// A zoo program on the session bus, as applications are that were made for it.
#pragma once

#include <functional>
#include <string>

struct DBusConnection;

namespace halvorn::zoo {

// What the program exports under its name, on the path made of it.
struct BusOptions {
  std::string name;                  // "org.example.Zoo"
  bool exportsActions = false;       // org.gtk.Actions with "quit" among them
  bool exportsOtherActions = false;  // org.gtk.Actions without it
  bool exportsApplication = false;   // org.freedesktop.Application
  bool exportsToolkitQuit = false;   // org.qtproject.Qt.QCoreApplication at /MainApplication
  bool isSilent = false;             // never answers anything
};

class Bus {
 public:
  // Exits the program when the bus or the name cannot be had.
  explicit Bus(const BusOptions& options);
  [[nodiscard]] int descriptor() const;
  // Prints the calls: "bus quit", "bus Activate", "bus Open", "bus action quit".
  void readCalls(const std::function<void()>& quit);

 private:
  DBusConnection* connection_ = nullptr;
  BusOptions options_;
};

}  // namespace halvorn::zoo
