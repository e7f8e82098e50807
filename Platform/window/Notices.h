// Words at the place that the desktop has for them, for a person who looks elsewhere.
#pragma once

#include <functional>

#include "Core/Text.h"

namespace halvorn {

// What is to be said, and what follows from pressing it.
struct Notice {
  enum class Kind { Result, Failure };  // of which a failure matters more

  Kind kind = Kind::Result;             // how much it matters
  Text title = {};                      // about what
  Text text = {};                       // the whole sentence
  Text actionTitle = {};                // of a button on it; "" for none
  std::function<void()> action = {};    // that button was pressed
  std::function<void()> selected = {};  // it was clicked itself
  std::function<void()> notShown = {};  // the desktop has no place for it, or did not take it
};

class Notices {
 public:
  virtual ~Notices() = default;
  // Shows it in place of the one before; where the desktop has no such place, nobody sees it and `notShown` is called.
  // Returns at once; what the person does with it is called later. Thread: main.
  virtual void show(const Notice& notice) = 0;
  // Takes away the one that is shown. Thread: main.
  virtual void withdraw() = 0;
};

}  // namespace halvorn
