// MutableText: a text that changes in place.
//
// A MutableText is a handle. Copies of the handle are the same object: what is done to one
// is seen through all of them, and isSameObject() holds. text() is an immutable copy of what
// it holds now. `==` compares content.
//
//   MutableText name(Text("Micro"));
//   MutableText same = name;
//   same.append(" Pro");          // name.text() is "Micro Pro" as well
//
// Thread: one at a time, for all handles of one object together.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "Core/Text.h"

namespace halvorn {

class MutableText {
 public:
  // A new, empty object; every one is its own.
  MutableText() : units_(std::make_shared<std::u16string>()) {}
  // A new object that begins with the content of the text.
  explicit MutableText(const Text& text) : units_(std::make_shared<std::u16string>(text.units())) {}
  // Copies only: a handle that was moved from would have no object.
  MutableText(const MutableText&) = default;
  MutableText& operator=(const MutableText&) = default;

  [[nodiscard]] std::size_t length() const { return units_->size(); }              // in UTF-16 units
  [[nodiscard]] bool isEmpty() const { return units_->empty(); }                   // has no unit
  [[nodiscard]] char16_t at(std::size_t index) const { return (*units_)[index]; }  // index < length()
  [[nodiscard]] std::u16string_view units() const { return *units_; }              // until the next change
  [[nodiscard]] Text text() const { return Text(*units_); }                        // as it is now
  // Whether a change of one is a change of the other.
  [[nodiscard]] bool isSameObject(const MutableText& other) const { return units_ == other.units_; }

  // Positions and lengths are clamped to the content. Adding a text to itself is fine.
  void append(const Text& text) { units_->append(text.units()); }
  void insert(std::size_t index, const Text& text) { replace(index, 0, text); }
  void erase(std::size_t start, std::size_t count) { replace(start, count, Text()); }
  void replace(std::size_t start, std::size_t count, const Text& with) {
    units_->replace(start < length() ? start : length(), count, with.units());
  }
  void setText(const Text& text) { units_->assign(text.units()); }  // all of it

  // Unit for unit.
  friend bool operator==(const MutableText& a, const MutableText& b) { return *a.units_ == *b.units_; }

 private:
  std::shared_ptr<std::u16string> units_;  // never null
};

}  // namespace halvorn
