// A text that is changed at positions that only grow, in linear time altogether.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace halvorn::StringExtensions {

// Behaves as a copy of the units that is changed in place: positions are those of the copy as it is now. What
// lies before the present position is settled; what lies behind it is kept as the pieces it is made of, the
// nearest last. All units given must outlive it.
class ForwardEdits {
 public:
  // The copy is that of these units, the position its first.
  explicit ForwardEdits(std::u16string_view units);

  // Goes to that position of the copy, which is neither before the present one nor past the end. Returns the
  // unit there, 0 at the end.
  char16_t moveTo(std::size_t position);
  // Replaces that many units from the present position on; the position stays in front of what was put in.
  void replace(std::size_t count, std::u16string_view with);
  // How many backslashes stand in the copy directly before the present position.
  [[nodiscard]] std::size_t backslashesBefore() const { return backslashes_; }
  [[nodiscard]] std::size_t length() const { return settled_.size() + behindLength_; }  // of the copy
  // The whole copy.
  [[nodiscard]] std::u16string finish() &&;

 private:
  // Takes up to that many units off the nearest piece.
  std::u16string_view takeFromNearest(std::size_t count);
  void settle(std::u16string_view units);

  std::u16string settled_;
  std::size_t backslashes_ = 0;              // at the end of what is settled
  std::vector<std::u16string_view> behind_;  // none is empty
  std::size_t behindLength_ = 0;
};

}  // namespace halvorn::StringExtensions
