kt_test(test_unit_walls KIND unit SUBJECT core SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/unit/WallsTest.cpp
  USES kt_test_support)
target_compile_definitions(test_unit_walls PRIVATE KT_TRAIN_PROGRAM="$<TARGET_FILE:train>"
  KT_INSTALLER_BUNDLE="${KT_BUNDLE_DIR}")
add_dependencies(test_unit_walls train HalvornInstaller)

# The same in every build, so the plain one does it.
if(NOT KT_SANITIZE)
  find_package(Qt6 REQUIRED COMPONENTS Widgets)
  pkg_check_modules(KT_ALL_HEADERS REQUIRED xcb dbus-1 glib-2.0 atspi-2 libpulse icu-uc)
  set(flags ${KT_ALL_HEADERS_CFLAGS})
  foreach(folder ${Qt6Widgets_INCLUDE_DIRS})
    list(APPEND flags -isystem ${folder})
  endforeach()
  add_test(NAME Walls.EveryHeaderCompilesAlone COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/walls/headers_alone.sh
    ${CMAKE_CXX_COMPILER} ${CMAKE_SOURCE_DIR} -fPIC ${flags})
  set_tests_properties(Walls.EveryHeaderCompilesAlone PROPERTIES LABELS "unit;core" TIMEOUT 600)
endif()

find_package(Qt6 REQUIRED COMPONENTS Core)
kt_test(test_contract_run_loop KIND contract SUBJECT core SOURCES
  ${CMAKE_CURRENT_SOURCE_DIR}/contract/RunLoopContractTest.cpp
  USES kt_platform_linux_ui kt_platform_posix kt_test_support Qt6::Core)
