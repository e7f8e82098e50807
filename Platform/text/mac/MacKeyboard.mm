#include "Platform/text/mac/MacKeyboard.h"

#import <Carbon/Carbon.h>

#include <string>

#include "Platform/running/mac/Held.h"

namespace halvorn {

namespace {
constexpr UniCharCount kMostUnits = 4;
}

std::uint32_t MacKeyboard::type() const { return LMGetKbdType(); }

OptionalText MacKeyboard::translate(std::uint16_t keyCode, KeyModifiers modifiers,
                                    std::uint8_t keyboardType) const {
  const Held<TISInputSourceRef> source(TISCopyCurrentKeyboardInputSource());
  if (!source) return std::nullopt;
  const auto data =
      static_cast<CFDataRef>(TISGetInputSourceProperty(source.get(), kTISPropertyUnicodeKeyLayoutData));
  if (data == nullptr) return std::nullopt;
  const auto* const layout = reinterpret_cast<const UCKeyboardLayout*>(CFDataGetBytePtr(data));
  UInt32 deadKeyState = 0;
  UniCharCount length = 0;
  UniChar units[kMostUnits] = {};
  const OSStatus status = UCKeyTranslate(layout, keyCode, kUCKeyActionDisplay, modifiers, keyboardType, 0,
                                         &deadKeyState, kMostUnits, &length, units);
  if (status != noErr || length > kMostUnits) return std::nullopt;
  return Text(std::u16string(units, units + length));
}

}  // namespace halvorn
