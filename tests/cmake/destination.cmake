# Bundles, lists, texts, settings, the log: the adapters behind the core's values.
kt_test(test_adapter_core KIND adapter SUBJECT core SOURCES
  ${CMAKE_CURRENT_SOURCE_DIR}/adapters/PropertyListTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/adapters/LinuxBundlesTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/adapters/LocalizedStringsTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/adapters/DefaultsAndFoldersTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/adapters/LogAndStreamsTest.cpp
  USES kt_platform_linux_desktop kt_test_support)
kt_test(test_contract_core KIND contract SUBJECT core SOURCES
  ${CMAKE_CURRENT_SOURCE_DIR}/contract/DesktopContractTest.cpp
  USES kt_platform_linux_desktop kt_test_support)

kt_test(test_unit_destination KIND unit SUBJECT destination SOURCES
  ${CMAKE_CURRENT_SOURCE_DIR}/unit/DestinationChoiceTest.cpp
  USES kt_installer)

add_executable(destination_probe ${CMAKE_CURRENT_SOURCE_DIR}/adapters/DestinationProbe.cpp)
target_link_libraries(destination_probe PRIVATE kt_installer kt_platform_linux_desktop kt_platform_linux_proc)
kt_test(test_adapter_destination KIND adapter SUBJECT destination SOURCES
  ${CMAKE_CURRENT_SOURCE_DIR}/adapters/DestinationOnDiskTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/adapters/XdgLoginItemsTest.cpp
  USES kt_platform_linux_desktop kt_test_support)
target_compile_definitions(test_adapter_destination PRIVATE
  KT_DESTINATION_PROBE="$<TARGET_FILE:destination_probe>")
add_dependencies(test_adapter_destination destination_probe)
