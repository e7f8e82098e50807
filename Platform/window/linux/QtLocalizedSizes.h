// Amounts of data in the conventions of a language, from the toolkit.
#pragma once

#include "Platform/text/LocalizedSizes.h"

namespace halvorn {

class QtLocalizedSizes : public LocalizedSizes {
 public:
  // The language as the texts have it ("de", "pt_BR"); numbers of one that nobody knows are written as in C.
  explicit QtLocalizedSizes(const Text& language) : language_(language) {}

  Part partOf(std::uint64_t bytes, std::uint64_t whole) const override;
  Text number(std::uint64_t number) const override;

 private:
  const Text language_;
};

}  // namespace halvorn
