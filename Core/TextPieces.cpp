#include "Core/TextPieces.h"

namespace halvorn {
namespace {

// Longer pieces are texts of their own, so that turning the page wastes no more than that.
constexpr std::size_t kLongestOnPage = Text::kPage / 8;

}  // namespace

TextPieces::TextPieces(const Text& text) : text_(text) {
  if (text.isEmpty() || text.buffer_->capacity() <= Text::kPage) page_ = text;
}

bool TextPieces::turnPage(std::size_t start, std::size_t count) {
  if (count > kLongestOnPage) return false;
  page_ = Text(std::u16string(text_.units().substr(start, Text::kPage)));
  pageStart_ = start;
  return true;
}

}  // namespace halvorn
