# The whole road of an installation with administrator rights, through the real window.
if(NOT TARGET kt_polkit_world)
  return()
endif()
add_executable(kt_start_report ${CMAKE_CURRENT_SOURCE_DIR}/flows/StartReport.cpp)
kt_test(kt_authorized_flow_tests KIND flow SUBJECT privileged TIMEOUT 300 SOURCES
  ${CMAKE_CURRENT_SOURCE_DIR}/flows/AuthorizedFlowTest.cpp ${CMAKE_CURRENT_SOURCE_DIR}/support/PersonsShoes.cpp
  USES kt_flow_support kt_polkit_world)
add_dependencies(kt_authorized_flow_tests kt_start_report kt_polkit_agent accessible_probe)
