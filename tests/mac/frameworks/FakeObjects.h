// Objects that the made-up functions give, counted until they are released. For sources in Objective-C++.
#pragma once

#import <Foundation/Foundation.h>

#include <CoreFoundation/CoreFoundation.h>

namespace fakemac {

// Takes over the reference and counts it.
CFTypeRef given(id object);
// For what is no object: descriptors, routines.
void countGiven();
void countTaken();
// Ends the program: what was released had not been given.
void releasedTooOften(const char* what);
// Has the class, or the objects of it, answer by this function; what it inherits the method from goes on as before.
void answerInstead(Class owner, SEL selector, IMP function, const char* types);

}  // namespace fakemac
