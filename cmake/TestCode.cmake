# kt_test_code(TARGET): how the tests and what they stand on are compiled. Headers that most of them include are read once.
# The product's own sources are compiled without: each goes on showing whether what it includes stands alone.
set(KT_COMMON_HEADERS gtest/gtest.h algorithm deque filesystem fstream functional iostream map memory optional set sstream
  string thread vector)
# The cache counts such headers in with what was compiled, when it may.
set(KT_TEST_LAUNCHER ${CMAKE_CXX_COMPILER_LAUNCHER})
if(KT_TEST_LAUNCHER MATCHES "ccache$")
  list(PREPEND KT_TEST_LAUNCHER env CCACHE_SLOPPINESS=pch_defines,time_macros)
endif()

function(kt_test_code target)
  if(KT_SANITIZE)
    # GCC 12 takes parts of <regex> for uninitialised when it compiles them for the sanitizers.
    target_compile_options(${target} PRIVATE $<$<COMPILE_LANGUAGE:CXX>:-Wno-maybe-uninitialized>)
    # What is tested is made quick enough; the tests themselves compile in half the time without.
    target_compile_options(${target} PRIVATE -O0)
  endif()
  # Clang wants the same macros wherever the headers are used, and compiles what is in Objective-C++. What is handed out is
  # built without any of it.
  get_target_property(sources ${target} SOURCES)
  if(KT_TOUR_ONLY OR NOT CMAKE_CXX_COMPILER_ID STREQUAL "GNU" OR sources MATCHES "[.]mm(;|$)")
    return()
  endif()
  # The headers are for all: programs, libraries and what uses the toolkit would differ in the first of these, and what
  # plays sounds in the second.
  set(options -fPIC -D_REENTRANT -fpch-preprocess $<TARGET_PROPERTY:GTest::gtest,INTERFACE_COMPILE_OPTIONS>)
  target_compile_options(${target} PRIVATE "$<$<COMPILE_LANGUAGE:CXX>:${options}>")
  set_target_properties(${target} PROPERTIES CXX_COMPILER_LAUNCHER "${KT_TEST_LAUNCHER}")
  if(target STREQUAL kt_common_headers)
    return()
  endif()
  if(NOT TARGET kt_common_headers)
    kt_common_headers()
  endif()
  target_precompile_headers(${target} REUSE_FROM kt_common_headers)
endfunction()

# A target of their own: none of its users may lack a macro that they were read with.
function(kt_common_headers)
  file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/CommonHeaders.cpp CONTENT "// Nothing but the headers.\n")
  add_library(kt_common_headers OBJECT ${PROJECT_BINARY_DIR}/CommonHeaders.cpp)
  kt_test_code(kt_common_headers)
  set(included ${KT_COMMON_HEADERS})
  list(TRANSFORM included REPLACE "(.+)" "$<$<COMPILE_LANGUAGE:CXX>:<\\1$<ANGLE-R>>")
  target_precompile_headers(kt_common_headers PRIVATE ${included})
endfunction()
