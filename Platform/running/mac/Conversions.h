// Values of the core as Foundation's objects, and back. For sources in Objective-C++ alone.
//
// What is answered is autoreleased or not owned. Thread: any.
#pragma once

#import <Foundation/Foundation.h>

#include <optional>
#include <string>
#include <vector>

#include "Core/PropertyValue.h"
#include "Core/Text.h"

namespace halvorn {

// Unit for unit. Where the system makes no string of lone surrogates, U+FFFD stands for each of them: never nil.
[[nodiscard]] NSString* stringOf(const Text& text);
// nil gives nullopt.
[[nodiscard]] OptionalText textOf(NSString* string);

[[nodiscard]] NSArray* arrayOf(const std::vector<Text>& texts);
[[nodiscard]] NSData* dataOf(std::string_view bytes);
[[nodiscard]] std::string bytesOf(NSData* data);

[[nodiscard]] Date dateOf(NSDate* date);
// nullopt for an object that no property list holds, also somewhere inside.
[[nodiscard]] std::optional<PropertyValue> valueOf(id object);
[[nodiscard]] std::optional<PropertyDictionary> dictionaryOf(NSDictionary* dictionary);

// What the action answers, with what it autoreleased released; the fallback when the system raised an exception.
template <typename Answer, typename Action>
Answer answered(Answer fallback, Action action) {
  NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
  Answer answer = fallback;
  @try {
    answer = action();
  } @catch (NSException*) {  // the fallback stands
  }
  [pool release];
  return answer;
}

// Likewise for what has no answer.
template <typename Action>
void attempted(Action action) {
  static_cast<void>(answered(false, [&] {
    action();
    return true;
  }));
}

}  // namespace halvorn
