# The desktop's facts: against fakes, on a live X desktop, on private buses.
find_package(Qt6 6.4 REQUIRED COMPONENTS DBus)
pkg_check_modules(KT_PROBE_XCB REQUIRED IMPORTED_TARGET xcb)
add_executable(desktop_window_probe support/WindowProbe.cpp)
target_link_libraries(desktop_window_probe PRIVATE PkgConfig::KT_PROBE_XCB)
add_executable(desktop_session_services support/SessionServices.cpp)
target_link_libraries(desktop_session_services PRIVATE Qt6::DBus)
add_executable(desktop_debugger_probe support/DebuggerProbe.cpp)
target_link_libraries(desktop_debugger_probe PRIVATE kt_platform_linux_facts)

kt_test(desktop_unit_test KIND unit SUBJECT desktop
  SOURCES unit/KTUtilitiesDesktopTest.cpp unit/KTUtilitiesLaunchingTest.cpp
  USES kt_utilities)
kt_test(desktop_contract_test KIND contract SUBJECT desktop
  SOURCES contract/DesktopFactsContractTest.cpp
  USES kt_platform_linux_facts kt_platform_linux_x11 kt_test_support Qt6::DBus)
kt_test(desktop_adapter_test KIND adapter SUBJECT desktop
  SOURCES adapters/LiveDesktopTest.cpp adapters/SessionServicesTest.cpp adapters/SystemFactsTest.cpp
  USES kt_utilities kt_platform_linux_facts kt_platform_linux_x11 kt_platform_linux_proc kt_test_support Qt6::DBus)
foreach(test desktop_contract_test desktop_adapter_test)
  target_compile_definitions(${test} PRIVATE KT_TEST_BUNDLE="${KT_BUNDLE_DIR}"
    KT_WINDOW_PROBE="$<TARGET_FILE:desktop_window_probe>"
    KT_SESSION_SERVICES="$<TARGET_FILE:desktop_session_services>"
    KT_DEBUGGER_PROBE="$<TARGET_FILE:desktop_debugger_probe>")
  add_dependencies(${test} desktop_window_probe desktop_session_services desktop_debugger_probe Micro)
endforeach()
