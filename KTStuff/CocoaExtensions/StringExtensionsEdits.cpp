#include "KTStuff/CocoaExtensions/StringExtensionsEdits.h"

#include <algorithm>

namespace halvorn::StringExtensions {

ForwardEdits::ForwardEdits(std::u16string_view units) {
  settled_.reserve(units.size());
  replace(0, units);
}

char16_t ForwardEdits::moveTo(std::size_t position) {
  while (settled_.size() < position && !behind_.empty()) settle(takeFromNearest(position - settled_.size()));
  return behind_.empty() ? u'\0' : behind_.back().front();
}

void ForwardEdits::replace(std::size_t count, std::u16string_view with) {
  while (count > 0 && !behind_.empty()) count -= takeFromNearest(count).size();
  if (with.empty()) return;
  behind_.push_back(with);
  behindLength_ += with.size();
}

std::u16string ForwardEdits::finish() && {
  settled_.reserve(length());
  while (!behind_.empty()) settle(takeFromNearest(behindLength_));
  return std::move(settled_);
}

std::u16string_view ForwardEdits::takeFromNearest(std::size_t count) {
  std::u16string_view& nearest = behind_.back();
  const std::u16string_view taken = nearest.substr(0, count);
  nearest.remove_prefix(taken.size());
  behindLength_ -= taken.size();
  if (nearest.empty()) behind_.pop_back();
  return taken;
}

void ForwardEdits::settle(std::u16string_view units) {
  settled_.append(units);
  const auto last =
      std::find_if_not(units.rbegin(), units.rend(), [](char16_t unit) { return unit == u'\\'; });
  const auto trailing = static_cast<std::size_t>(last - units.rbegin());
  backslashes_ = trailing == units.size() ? backslashes_ + trailing : trailing;
}

}  // namespace halvorn::StringExtensions
