kt_test(test_unit_quit KIND unit SUBJECT quit SOURCES
  ${CMAKE_CURRENT_SOURCE_DIR}/unit/ProductQuitterTest.cpp
  USES kt_installer kt_process)
