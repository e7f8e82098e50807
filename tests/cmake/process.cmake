kt_test(test_unit_process KIND unit SUBJECT process SOURCES
  ${CMAKE_CURRENT_SOURCE_DIR}/unit/KTProcessTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/unit/KTProcessAttributesTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/unit/KTProcessQuittingTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/unit/NotificationQueueTest.cpp
  USES kt_process)
kt_test(test_contract_process KIND contract SUBJECT process SOURCES
  ${CMAKE_CURRENT_SOURCE_DIR}/contract/ProcessContractTest.cpp
  USES kt_test_processes)
kt_test(test_adapter_process KIND adapter SUBJECT process SOURCES
  ${CMAKE_CURRENT_SOURCE_DIR}/adapters/ProcessPartsTest.cpp
  USES kt_test_processes kt_platform_linux_dbus kt_platform_linux_atspi)
