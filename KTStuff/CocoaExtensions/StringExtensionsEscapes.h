// StringExtensions, escapes: backslashes put in and taken out, source literals.
#pragma once

#include "Core/Text.h"

namespace halvorn {

// The characters that are escaped by default: line feed, carriage return, tab, backslash.
// Made in every file that names it before what that file makes itself.
inline const Text KTEscapeCharacters = "\n\r\t\\";

namespace StringExtensions {

// Puts a backslash before each of the characters, tab, return and line feed as \t, \r and \n.
// KEEP: exact for the first of them only. From then on the search goes through the receiver, with positions
// of the result that has grown: it begins two units after the last escape and ends at the receiver's end, and
// what it finds is escaped at that position of the result. So "a\tb\tc" (tabs) becomes "a\\tb" with a
// backslash before the b. The text itself when it holds none of the characters.
[[nodiscard]] Text stringByEscapingCharacters(const Text& text, const Text& characters);

// Takes the backslash off each of the characters; \t, \r and \n become tab, return and line feed when the
// characters hold these. What a backslash produced is not looked at again: "\\\\n" becomes a backslash and
// "n". A backslash before anything else stays. The text itself when there is nothing to expand.
// KEEP: an "n", "r" or "t" among the characters is taken for the control character that it stands for.
[[nodiscard]] Text stringByExpandingEscapedCharacters(const Text& text, const Text& characters);

// Replaces the target where an even number of backslashes (or none) stands before it.
// KEEP: occurrences are searched in the receiver, yet counted and replaced at the same positions of the
// result. That is exact for the first occurrence, and for all when target and replacement have the same
// length. The search ends where the shorter of the two ends. An empty target occurs nowhere.
[[nodiscard]] Text stringByReplacingUnescapedOccurrencesOfString(const Text& text, const Text& target,
                                                                 const Text& withString);

// \r, then \n, then \t become return, line feed and tab, each as above.
[[nodiscard]] Text stringByExpandingEscapedControlCharacters(const Text& text);

// The text of a source literal @"...": "" when it is at most 2 units long; else without the first two units
// and the last, and with \\, \", \r, \n, \t replaced in this order. KEEP: backslash pairs come first, so an
// escaped backslash before an "n" ends as a line feed.
[[nodiscard]] Text stringWithObjCString(const Text& literal);
// KEEP: deliberately the same text, unchanged.
[[nodiscard]] Text objCStringWithString(const Text& text);

}  // namespace StringExtensions
}  // namespace halvorn
