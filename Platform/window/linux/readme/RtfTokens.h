// Rich text (RTF) cut into its tokens. Any bytes give tokens; the last one is End.
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <optional>

namespace halvorn {

struct RtfToken {
  enum class Kind {
    GroupStart,  // {
    GroupEnd,    // }
    Word,        // \name or \name12
    Symbol,      // \ and a character that is no letter; in `text`
    Byte,        // \'e4; in `text`
    Text,        // bytes of the document, without line ends
    Binary,      // what \bin announced
    End
  };
  Kind kind = Kind::End;
  QByteArrayView text;
  std::optional<int> number;  // of a word, clamped
};

class RtfTokens {
 public:
  // The bytes must live as long as the tokens.
  explicit RtfTokens(QByteArrayView bytes) : bytes_(bytes) {}
  [[nodiscard]] RtfToken next();

 private:
  RtfToken control();
  RtfToken word();
  RtfToken hexByte();

  QByteArrayView bytes_;
  qsizetype at_ = 0;
  char byte_ = 0;  // what the last Byte token points to
};

}  // namespace halvorn
