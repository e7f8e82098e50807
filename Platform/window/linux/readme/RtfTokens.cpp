#include "Platform/window/linux/readme/RtfTokens.h"

#include <algorithm>

namespace halvorn {
namespace {

constexpr long kLargestNumber = 1'000'000'000;

bool isLetter(char byte) { return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z'); }
bool isDigit(char byte) { return byte >= '0' && byte <= '9'; }

int hexDigit(char byte) {
  if (isDigit(byte)) return byte - '0';
  if (byte >= 'a' && byte <= 'f') return byte - 'a' + 10;
  if (byte >= 'A' && byte <= 'F') return byte - 'A' + 10;
  return -1;
}

}  // namespace

RtfToken RtfTokens::next() {
  while (at_ < bytes_.size() && (bytes_[at_] == '\n' || bytes_[at_] == '\r' || bytes_[at_] == '\0')) ++at_;
  if (at_ >= bytes_.size()) return {};
  switch (bytes_[at_]) {
    case '{':
      ++at_;
      return {RtfToken::Kind::GroupStart, {}, {}};
    case '}':
      ++at_;
      return {RtfToken::Kind::GroupEnd, {}, {}};
    case '\\':
      ++at_;
      return control();
    default:
      break;
  }
  const qsizetype start = at_;
  const auto ends = [](char byte) {
    return byte == '{' || byte == '}' || byte == '\\' || byte == '\n' || byte == '\r' || byte == '\0';
  };
  while (at_ < bytes_.size() && !ends(bytes_[at_])) ++at_;
  return {RtfToken::Kind::Text, bytes_.sliced(start, at_ - start), {}};
}

RtfToken RtfTokens::control() {
  if (at_ >= bytes_.size()) return {};
  if (isLetter(bytes_[at_])) return word();
  if (bytes_[at_] == '\'') return hexByte();
  return {RtfToken::Kind::Symbol, bytes_.sliced(at_++, 1), {}};
}

RtfToken RtfTokens::hexByte() {
  ++at_;
  if (at_ + 2 > bytes_.size()) {
    at_ = bytes_.size();
    return {};
  }
  const int high = hexDigit(bytes_[at_]);
  const int low = hexDigit(bytes_[at_ + 1]);
  if (high < 0 || low < 0) return {RtfToken::Kind::Text, {}, {}};  // no byte: what follows is text
  at_ += 2;
  byte_ = static_cast<char>(high * 16 + low);
  return {RtfToken::Kind::Byte, QByteArrayView(&byte_, 1), {}};
}

RtfToken RtfTokens::word() {
  const qsizetype start = at_;
  while (at_ < bytes_.size() && isLetter(bytes_[at_])) ++at_;
  RtfToken token{RtfToken::Kind::Word, bytes_.sliced(start, at_ - start), {}};

  const bool negative = at_ + 1 < bytes_.size() && bytes_[at_] == '-' && isDigit(bytes_[at_ + 1]);
  if (negative) ++at_;
  if (at_ < bytes_.size() && isDigit(bytes_[at_])) {
    long value = 0;
    for (; at_ < bytes_.size() && isDigit(bytes_[at_]); ++at_) {
      value = std::min(value * 10 + (bytes_[at_] - '0'), kLargestNumber);
    }
    token.number = static_cast<int>(negative ? -value : value);
  }
  if (at_ < bytes_.size() && bytes_[at_] == ' ') ++at_;  // belongs to the word

  if (token.text == "bin") {
    const qsizetype count = std::clamp<qsizetype>(token.number.value_or(0), 0, bytes_.size() - at_);
    token = {RtfToken::Kind::Binary, bytes_.sliced(at_, count), {}};
    at_ += count;
  }
  return token;
}

}  // namespace halvorn
