// KTRegularExpression: the platform's regular expressions where there are any.
//
//   KTRegularExpression regularExpressions([&] { return &icuRegex; });
//   if (regularExpressions.regexAvailable()) ...
//
// One object of this class is made at the program's root. It looks for the platform's engine once, when first
// asked, also when it finds none.
//
// Thread: any.
#pragma once

#include <atomic>
#include <functional>
#include <mutex>

#include "Platform/text/Regex.h"

namespace halvorn {

class KTRegularExpression {
 public:
  // The platform's engine, which outlives this object; null where the platform has none.
  using Lookup = std::function<const Regex*()>;
  explicit KTRegularExpression(Lookup lookup) : lookup_(std::move(lookup)) {}  // asked once
  KTRegularExpression(const KTRegularExpression&) = delete;
  KTRegularExpression& operator=(const KTRegularExpression&) = delete;

  [[nodiscard]] const Regex* regexClass() const;  // looked for once
  [[nodiscard]] bool regexAvailable() const;      // whether there is an engine
  // True for the first caller of the process: whoever finds no engine says so once.
  [[nodiscard]] bool takeUnavailabilityMessage() const { return !hasLoggedUnavailability_.exchange(true); }
  // Neither an expression nor an error when the platform has no engine.
  [[nodiscard]] RegexCompilation regularExpressionWithPattern(const Text& pattern,
                                                              RegexOptions options) const;

 private:
  const Lookup lookup_;
  mutable std::mutex lock_;
  mutable bool isKnown_ = false;
  mutable const Regex* class_ = nullptr;
  mutable std::atomic<bool> hasLoggedUnavailability_ = false;
};

}  // namespace halvorn
