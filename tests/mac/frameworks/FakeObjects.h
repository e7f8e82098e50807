// Objects that the made-up functions give, counted until they are released. For sources in Objective-C++.
#pragma once

#import <Foundation/Foundation.h>

#include <CoreServices/CoreServices.h>

#include <string>

namespace fakemac {

// Takes over the reference and counts it.
CFTypeRef given(id object);
// For what is no object: descriptors, routines.
void countGiven();
void countTaken();
// Ends the program: what was released had not been given.
void releasedTooOften(const char* what);
// Ends the program: real frameworks make no promise of what they do then.
void endForMisuse(const char* what);
// Has the reference stand for the path.
void refer(FSRef* location, const std::string& path);
// What the class answers by now. Looking it up has the class prepare itself.
[[nodiscard]] IMP methodBefore(Class owner, SEL selector);
// Has the class, or the objects of it, answer by this function; what it inherits the method from goes on as before.
void answerInstead(Class owner, SEL selector, IMP function, const char* types);

}  // namespace fakemac
