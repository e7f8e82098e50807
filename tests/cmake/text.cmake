# Texts: the operations on fakes and against oracles.
kt_test(text_unit_test KIND unit SUBJECT text
  SOURCES unit/MutableTextTest.cpp unit/StringEncodingsTest.cpp unit/StringEscapesTest.cpp unit/StringMarkupTest.cpp
    unit/StringNumbersTest.cpp unit/StringPatternsTest.cpp unit/StringScalarsTest.cpp unit/StringWhitespaceTest.cpp
    unit/StringEscapesOracleTest.cpp unit/StringLinesOracleTest.cpp unit/StringNumbersOracleTest.cpp
    unit/StringPatternsOracleTest.cpp unit/StringScalarsOracleTest.cpp
  USES kt_text)
# The fakes and the libraries behind the same interfaces.
kt_test(text_contract_test KIND contract SUBJECT text
  SOURCES contract/TextContractTest.cpp contract/TextDevicesContractTest.cpp
  USES kt_platform_linux_text kt_platform_posix kt_test_support)
# The operations with what a Linux desktop has behind them.
kt_test(text_adapter_test KIND adapter SUBJECT text TIMEOUT 120
  SOURCES adapters/TextFilesTest.cpp adapters/TextHostileInputTest.cpp adapters/TextLibrariesTest.cpp
  USES kt_text kt_platform_linux_text kt_platform_posix kt_test_support)
