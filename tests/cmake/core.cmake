kt_test(test_unit_core KIND unit SUBJECT core SOURCES
  ${CMAKE_CURRENT_SOURCE_DIR}/unit/TextTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/unit/TextPartsTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/unit/PathsTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/unit/FormatTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/unit/FourCharCodeTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/unit/PropertyValueTest.cpp
  USES kt_core)
