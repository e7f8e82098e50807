// Text as bytes, converted by the system's strings. Its numbers of encodings are those of TextCodecs.h.
#pragma once

#include "Platform/text/TextCodecs.h"

namespace halvorn {

class MacTextCodecs : public TextCodecs {
 public:
  [[nodiscard]] std::optional<Text> decode(std::string_view bytes, TextEncoding encoding) const override;
  [[nodiscard]] std::optional<std::string> encode(const Text& text, TextEncoding encoding) const override;
  [[nodiscard]] std::optional<TextEncoding> encodingForIanaName(const Text& name) const override;
  [[nodiscard]] std::vector<DetectedEncoding> detectEncodings(std::string_view bytes) const override;
};

}  // namespace halvorn
