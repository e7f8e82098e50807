# Opening, launching and registering as the desktop does.
add_executable(launch_probe ${CMAKE_CURRENT_SOURCE_DIR}/adapters/LaunchProbe.cpp)
kt_test(test_adapter_launch KIND adapter SUBJECT launch SOURCES
  ${CMAKE_CURRENT_SOURCE_DIR}/adapters/LaunchingTest.cpp ${CMAKE_CURRENT_SOURCE_DIR}/adapters/BundleRegistrationTest.cpp
  USES kt_platform_linux_desktop kt_test_support)
target_compile_definitions(test_adapter_launch PRIVATE KT_LAUNCH_PROBE="$<TARGET_FILE:launch_probe>")
add_dependencies(test_adapter_launch launch_probe)
