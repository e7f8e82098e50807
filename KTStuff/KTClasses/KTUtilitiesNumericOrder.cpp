#include "KTStuff/KTClasses/KTUtilitiesNumericOrder.h"

#include <string_view>

namespace halvorn {

namespace {

using Units = std::u16string_view;

bool isDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }

template <typename Value>
Ordering orderingOf(const Value& a, const Value& b) {
  if (a < b) return Ordering::Ascending;
  return b < a ? Ordering::Descending : Ordering::Same;
}

// Takes the digits at the start of the units away and returns them without leading zeros, so that of two
// numbers the one with more digits is the greater.
Units takeNumber(Units& units) {
  std::size_t end = 0;
  while (end < units.size() && isDigit(units[end])) ++end;
  std::size_t start = 0;
  while (start < end && units[start] == u'0') ++start;
  const Units number = units.substr(start, end - start);
  units.remove_prefix(end);
  return number;
}

Ordering compareNumbers(Units a, Units b) {
  const Ordering byLength = orderingOf(a.size(), b.size());
  return byLength != Ordering::Same ? byLength : orderingOf(a, b);
}

}  // namespace

Ordering compareNumerically(const Text& a, const Text& b) {
  Units restOfA = a.units();
  Units restOfB = b.units();
  while (!restOfA.empty() && !restOfB.empty()) {
    Ordering ordering = Ordering::Same;
    if (isDigit(restOfA.front()) && isDigit(restOfB.front())) {
      const Units numberOfA = takeNumber(restOfA);
      const Units numberOfB = takeNumber(restOfB);
      ordering = compareNumbers(numberOfA, numberOfB);
    } else {
      ordering = orderingOf(restOfA.front(), restOfB.front());
      restOfA.remove_prefix(1);
      restOfB.remove_prefix(1);
    }
    if (ordering != Ordering::Same) return ordering;
  }
  return orderingOf(restOfA.size(), restOfB.size());
}

}  // namespace halvorn
