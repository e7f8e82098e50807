# Bundles, lists, texts, settings, the log: the adapters behind the core's values.
kt_test(test_adapter_core KIND adapter SUBJECT core SOURCES
  ${CMAKE_CURRENT_SOURCE_DIR}/adapters/PropertyListTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/adapters/LinuxBundlesTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/adapters/LocalizedStringsTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/adapters/DefaultsAndFoldersTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/adapters/LogAndStreamsTest.cpp
  USES kt_platform_linux_desktop kt_test_support)

kt_test(test_unit_destination KIND unit SUBJECT destination SOURCES
  ${CMAKE_CURRENT_SOURCE_DIR}/unit/DestinationChoiceTest.cpp
  USES kt_installer)
