kt_test(test_unit_process KIND unit SUBJECT process SOURCES
  ${CMAKE_CURRENT_SOURCE_DIR}/unit/KTProcessTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/unit/KTProcessAttributesTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/unit/KTProcessQuittingTest.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/unit/NotificationQueueTest.cpp
  USES kt_process)
