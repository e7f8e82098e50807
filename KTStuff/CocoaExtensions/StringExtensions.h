// StringExtensions: what the class library adds to texts. Free functions over Text, one file per topic:
//
//   Whitespace         trimming, texts on one line
//   Lines              line breaks, splitting, repetition
//   Escapes            backslashes, KTEscapeCharacters, source literals
//   Numbers            parsing; comparing with numbers by value
//   Patterns           wildcards, replacing by regular expression
//   Scalars            UTF-16 as Unicode scalars, skin colors
//   VirtualCharacters  codes that stand for sequences, ligatures
//   Encodings          bytes of known and unknown encoding, appending to files
//   Html               the text of markup
//   PercentEscapes     URLs
//   Digests            MD5
//   Keyboard           what a key types
//
// A function that finds nothing to change returns the text it was given, the same object. Lengths
// and indices fit 32 bits. What has class-wide state is an object made once at the program's
// root: VirtualCharacters, RegexReplacing.
//
// Thread: any, where nothing else is said.
#pragma once

#include "KTStuff/CocoaExtensions/StringExtensionsDigests.h"
#include "KTStuff/CocoaExtensions/StringExtensionsEncodings.h"
#include "KTStuff/CocoaExtensions/StringExtensionsEscapes.h"
#include "KTStuff/CocoaExtensions/StringExtensionsHtml.h"
#include "KTStuff/CocoaExtensions/StringExtensionsKeyboard.h"
#include "KTStuff/CocoaExtensions/StringExtensionsLines.h"
#include "KTStuff/CocoaExtensions/StringExtensionsNumbers.h"
#include "KTStuff/CocoaExtensions/StringExtensionsPatterns.h"
#include "KTStuff/CocoaExtensions/StringExtensionsPercentEscapes.h"
#include "KTStuff/CocoaExtensions/StringExtensionsScalars.h"
#include "KTStuff/CocoaExtensions/StringExtensionsVirtualCharacters.h"
#include "KTStuff/CocoaExtensions/StringExtensionsWhitespace.h"
