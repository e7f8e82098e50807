# Bundles, lists, texts, settings, the log: the adapters behind the core's values.
kt_test(test_adapter_core KIND adapter SUBJECT core SOURCES
  ${CMAKE_CURRENT_SOURCE_DIR}/adapters/PropertyListTest.cpp
  USES kt_platform_linux_desktop kt_test_support)
