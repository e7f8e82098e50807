include(TestCode)

# kt_library(NAME SOURCES ... [USES ...]): a static library that includes from the root of the tree.
function(kt_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;USES;PRIVATE_USES" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR})
  target_link_libraries(${name} PUBLIC ${ARG_USES} PRIVATE ${ARG_PRIVATE_USES})
endfunction()

# kt_adapters([SOURCES ...] [USES ...] [PRIVATE_USES ...]): what the folder of a system adds to its subject's library.
function(kt_adapters)
  cmake_parse_arguments(ARG "" "" "SOURCES;USES;PRIVATE_USES" ${ARGN})
  list(TRANSFORM ARG_SOURCES PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
  target_sources(${KT_ADAPTERS} PRIVATE ${ARG_SOURCES})
  target_link_libraries(${KT_ADAPTERS} PUBLIC ${ARG_USES} PRIVATE ${ARG_PRIVATE_USES})
endfunction()

# kt_module(NAME SOURCES ... USES ...): loaded by the program when it is first needed; only the function that makes the
# adapter can be seen from outside.
function(kt_module name)
  cmake_parse_arguments(ARG "" "" "SOURCES;USES" ${ARGN})
  add_library(${name} MODULE ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ${ARG_USES})
  target_link_options(${name} PRIVATE -Wl,--exclude-libs,ALL)
  set_target_properties(${name} PROPERTIES PREFIX "" CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON
    LIBRARY_OUTPUT_DIRECTORY ${KT_BUNDLE_DIR}/Contents/${KT_PROGRAM_FOLDER})
endfunction()

# kt_test(NAME KIND unit|contract|adapter|flow SUBJECT words SOURCES ... [USES ...] [TIMEOUT s] [PREFIX p] [FAILS_ON regex]
#   [SERIAL]): one program of GoogleTest cases; every case becomes a test of its own that carries the label KIND-SUBJECT, so
# `ctest -L processes` runs one subject, and `ctest -L unit` one kind; `ctest -L library` runs every case of the class
# library, which is what uses one of its libraries. PREFIX stands before each name. A case that prints what FAILS_ON
# matches has failed.
set(KT_CLASS_LIBRARY "^kt_(core|text|process|utilities.*|sound|color|views|installer_interface|system.*|test_processes)$")
function(kt_test name)
  cmake_parse_arguments(ARG "SERIAL" "KIND;SUBJECT;TIMEOUT;PREFIX;FAILS_ON" "SOURCES;USES;ENVIRONMENT" ${ARGN})
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 120)
  endif()
  add_executable(${name} ${ARG_SOURCES})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR})
  target_link_libraries(${name} PRIVATE ${ARG_USES} GTest::gtest GTest::gtest_main)
  target_compile_definitions(${name} PRIVATE
    KT_SOURCE_DIR="${PROJECT_SOURCE_DIR}" KT_BINARY_DIR="${PROJECT_BINARY_DIR}")
  kt_test_code(${name})
  set(serial FALSE)
  if(ARG_SERIAL)
    set(serial TRUE)
  endif()
  # Lists do not survive the discovery of tests, so there is one label: `ctest -L` finds each word in it.
  set(label "${ARG_KIND}-${ARG_SUBJECT}")
  list(FILTER ARG_USES INCLUDE REGEX ${KT_CLASS_LIBRARY})
  if(ARG_USES AND NOT ARG_SUBJECT STREQUAL library)
    string(APPEND label "-library")
  endif()
  set(properties LABELS "${label}" TIMEOUT ${ARG_TIMEOUT} RUN_SERIAL ${serial})
  if(ARG_ENVIRONMENT)
    list(APPEND properties ENVIRONMENT "${ARG_ENVIRONMENT}")
  endif()
  if(ARG_FAILS_ON)
    list(APPEND properties FAIL_REGULAR_EXPRESSION "${ARG_FAILS_ON}")
  endif()
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 120 TEST_PREFIX "${ARG_PREFIX}" PROPERTIES ${properties})
endfunction()

# kt_every_test_is_built(FOLDER): fails when a file of tests below the folder is in no program made there.
function(kt_every_test_is_built folder)
  get_property(targets DIRECTORY ${folder} PROPERTY BUILDSYSTEM_TARGETS)
  set(built)
  foreach(target ${targets})
    get_target_property(sources ${target} SOURCES)
    list(APPEND built ${sources})
  endforeach()
  file(GLOB_RECURSE tests CONFIGURE_DEPENDS RELATIVE ${CMAKE_CURRENT_SOURCE_DIR}/${folder} ${folder}/*Test.cpp)
  foreach(test ${tests})
    if(NOT test IN_LIST built)
      message(FATAL_ERROR "No program is made of the tests in ${folder}/${test}")
    endif()
  endforeach()
endfunction()
