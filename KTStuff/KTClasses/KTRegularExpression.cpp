#include "KTStuff/KTClasses/KTRegularExpression.h"

namespace halvorn {

const Regex* KTRegularExpression::regexClass() const {
  const std::lock_guard lock(lock_);
  if (!isKnown_) {
    class_ = lookup_();
    isKnown_ = true;
  }
  return class_;
}

bool KTRegularExpression::regexAvailable() const { return regexClass() != nullptr; }

RegexCompilation KTRegularExpression::regularExpressionWithPattern(const Text& pattern,
                                                                   RegexOptions options) const {
  const Regex* const regex = regexClass();
  return regex != nullptr ? regex->compile(pattern, options) : RegexCompilation{};
}

}  // namespace halvorn
