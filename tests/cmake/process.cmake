kt_test(test_unit_process KIND unit SUBJECT process SOURCES
  ${CMAKE_CURRENT_SOURCE_DIR}/unit/KTProcessTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/unit/KTProcessAttributesTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/unit/KTProcessQuittingTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/unit/NotificationQueueTest.cpp
  USES kt_process)
kt_test(test_contract_process KIND contract SUBJECT process SOURCES
  ${CMAKE_CURRENT_SOURCE_DIR}/contract/ProcessContractTest.cpp
  USES kt_test_processes)
find_package(Qt6 6.4 REQUIRED COMPONENTS Widgets)
kt_test(test_adapter_process KIND adapter SUBJECT process SOURCES
  ${CMAKE_CURRENT_SOURCE_DIR}/adapters/ProcessPartsTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/adapters/process/AttributesTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/adapters/process/AccessibilityWatchTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/adapters/process/BusEventsTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/adapters/process/EventsTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/adapters/process/PidReuseTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/adapters/process/QuittingTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/adapters/process/SampleBundleTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/adapters/process/SessionTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/support/SampleProduct.cpp
  USES kt_test_processes kt_installer kt_platform_linux_dbus kt_platform_linux_atspi kt_platform_linux_text
    kt_platform_linux_ui Qt6::Widgets)
# Watched by the accessibility tests, and only started by them.
add_executable(kt_watched ${CMAKE_CURRENT_SOURCE_DIR}/support/zoo/WatchedMain.cpp)
target_link_libraries(kt_watched PRIVATE Qt6::Widgets)
target_compile_definitions(test_adapter_process PRIVATE KT_WATCHED_PROGRAM="$<TARGET_FILE:kt_watched>")
add_dependencies(test_adapter_process kt_watched Sample)
