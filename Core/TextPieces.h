// TextPieces: many pieces cut off one text, front to back.
//
//   TextPieces pieces(page);
//   pieces.cutInto(lines, 0, 80);
//
// Pieces that lie together share a page of at most Text::kPage units, which is copied from the text when the
// first of them is cut. So a piece is cheap, and one that is kept does not keep the text in memory.
//
// Thread: one at a time; the pieces are texts like any other.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "Core/Text.h"

namespace halvorn {

class TextPieces {
 public:
  explicit TextPieces(const Text& text);  // which is kept alive

  // Adds the units in that range, which lies in the text. Quick where ranges grow.
  void cutInto(std::vector<Text>& parts, std::size_t start, std::size_t count) {
    if (count == 0) {
      parts.emplace_back();
      return;
    }
    const bool isOnPage = start >= pageStart_ && start + count <= pageStart_ + page_.length();
    if (!isOnPage && !turnPage(start, count)) {
      parts.push_back(text_.substring(start, count));
      return;
    }
    // In place: the only count of a reference is that of the piece itself.
    Text& part = parts.emplace_back();
    part.buffer_ = page_.buffer_;
    part.units_ = std::u16string_view(page_.units_.data() + (start - pageStart_), count);
  }

 private:
  // Whether the piece is on the page now; the long ones never are.
  [[nodiscard]] bool turnPage(std::size_t start, std::size_t count);

  Text text_;
  Text page_;
  std::size_t pageStart_ = 0;  // where in the text the page begins
};

}  // namespace halvorn
