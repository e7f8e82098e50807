# kt_library(NAME SOURCES ... [USES ...]): a static library that includes from the root of the tree.
function(kt_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;USES;PRIVATE_USES" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_include_directories(${name} PUBLIC ${CMAKE_SOURCE_DIR})
  target_link_libraries(${name} PUBLIC ${ARG_USES} PRIVATE ${ARG_PRIVATE_USES})
endfunction()

# kt_test(NAME KIND unit|contract|adapter|flow SUBJECT word SOURCES ... [USES ...] [TIMEOUT s] [SERIAL]):
# one program of GoogleTest cases; every case becomes a test of its own that carries the label
# KIND-SUBJECT, so `ctest -L process` runs one subject.
function(kt_test name)
  cmake_parse_arguments(ARG "SERIAL" "KIND;SUBJECT;TIMEOUT" "SOURCES;USES;ENVIRONMENT" ${ARGN})
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 60)
  endif()
  add_executable(${name} ${ARG_SOURCES})
  target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR})
  target_link_libraries(${name} PRIVATE ${ARG_USES} GTest::gtest GTest::gtest_main)
  target_compile_definitions(${name} PRIVATE
    KT_SOURCE_DIR="${CMAKE_SOURCE_DIR}" KT_BINARY_DIR="${CMAKE_BINARY_DIR}")
  set(serial FALSE)
  if(ARG_SERIAL)
    set(serial TRUE)
  endif()
  # Lists do not survive the discovery of tests, so there is one label: `ctest -L` finds either word in it.
  set(properties LABELS "${ARG_KIND}-${ARG_SUBJECT}" TIMEOUT ${ARG_TIMEOUT} RUN_SERIAL ${serial})
  if(ARG_ENVIRONMENT)
    list(APPEND properties ENVIRONMENT "${ARG_ENVIRONMENT}")
  endif()
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST PROPERTIES ${properties})
endfunction()
