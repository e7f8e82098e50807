// Digests by the system's own library.
#pragma once

#include "Platform/text/Digests.h"

namespace halvorn {

class MacDigests : public Digests {
 public:
  [[nodiscard]] std::optional<Md5Digest> md5(std::string_view bytes) const override;
};

}  // namespace halvorn
