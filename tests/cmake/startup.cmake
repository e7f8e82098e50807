# The controller on fakes, one program for each subject of it.
add_library(kt_installer_fixture STATIC ${CMAKE_CURRENT_SOURCE_DIR}/unit/InstallerFixture.cpp)
target_link_libraries(kt_installer_fixture PUBLIC kt_installer GTest::gtest)
function(kt_installer_test subject source)
  kt_test(test_unit_${subject} KIND unit SUBJECT ${subject} SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/unit/${source}
    USES kt_installer_fixture)
endfunction()
kt_installer_test(arguments ArgumentsTest.cpp)
kt_installer_test(startup StartupTest.cpp)
kt_installer_test(worker WorkerTest.cpp)
kt_installer_test(completion CompletionTest.cpp)
kt_installer_test(colour WindowColorsTest.cpp)
kt_test(test_unit_page_flow KIND unit SUBJECT window SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/unit/PageFlowTest.cpp
  USES kt_installer_fixture)
