# Texts: the operations on fakes and against oracles.
kt_test(text_unit_test KIND unit SUBJECT text
  SOURCES unit/MutableTextTest.cpp unit/StringEncodingsTest.cpp unit/StringEscapesTest.cpp unit/StringMarkupTest.cpp
    unit/StringNumbersTest.cpp unit/StringPatternsTest.cpp unit/StringScalarsTest.cpp
    unit/StringWhitespaceTest.cpp
  USES kt_text)
