// What a function of the system with Create or Copy in its name gave, released when this ends.
// For sources in Objective-C++ alone.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

namespace halvorn {

template <typename Reference>
class Held {
 public:
  Held() = default;
  explicit Held(Reference reference) : reference_(reference) {}
  ~Held() { reset(); }
  Held(const Held&) = delete;
  Held& operator=(const Held&) = delete;

  [[nodiscard]] Reference get() const { return reference_; }
  explicit operator bool() const { return reference_ != nullptr; }
  // Where a function writes what it gives.
  [[nodiscard]] Reference* out() {
    reset();
    return &reference_;
  }
  void reset() {
    if (reference_ != nullptr) CFRelease(reference_);
    reference_ = nullptr;
  }

 private:
  Reference reference_ = nullptr;
};

}  // namespace halvorn
