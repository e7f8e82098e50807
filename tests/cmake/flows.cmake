if(NOT TARGET HalvornInstaller)
  return()
endif()
# Whole installations through the real window.
pkg_check_modules(ATSPI REQUIRED IMPORTED_TARGET atspi-2 gobject-2.0 glib-2.0)
add_executable(accessible_probe ${CMAKE_CURRENT_SOURCE_DIR}/support/accessible_probe.cpp)
target_link_libraries(accessible_probe PRIVATE PkgConfig::ATSPI)

add_library(kt_flow_support STATIC ${CMAKE_CURRENT_SOURCE_DIR}/support/InstallerDriver.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/support/SampleProduct.cpp ${CMAKE_CURRENT_SOURCE_DIR}/support/SharedApplications.cpp)
target_compile_definitions(kt_flow_support PRIVATE KT_SOURCE_DIR="${CMAKE_SOURCE_DIR}"
  KT_BINARY_DIR="${CMAKE_BINARY_DIR}" KT_BUNDLE_DIR="${KT_BUNDLE_DIR}")
target_link_libraries(kt_flow_support PUBLIC kt_test_support)
add_dependencies(kt_flow_support accessible_probe Sample HalvornInstaller)

kt_test(test_flow_install KIND flow SUBJECT install TIMEOUT 300 SOURCES
  ${CMAKE_CURRENT_SOURCE_DIR}/flows/InstallFlowTest.cpp ${CMAKE_CURRENT_SOURCE_DIR}/flows/FlowFixture.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/flows/WholeLog.cpp
  USES kt_flow_support)

add_executable(installer_tour ${CMAKE_CURRENT_SOURCE_DIR}/flows/installer_tour.cpp)
target_compile_definitions(installer_tour PRIVATE KT_SOURCE_DIR="${CMAKE_SOURCE_DIR}")
target_link_libraries(installer_tour PRIVATE kt_flow_support)
add_executable(sample_image ${CMAKE_CURRENT_SOURCE_DIR}/flows/sample_image.cpp)
target_link_libraries(sample_image PRIVATE kt_flow_support)

include(${CMAKE_CURRENT_LIST_DIR}/privileged_flow.cmake)
