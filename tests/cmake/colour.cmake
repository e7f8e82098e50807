# Colours: on fakes, the appearances and drawing fake and real.
kt_test(colour_unit_test KIND unit SUBJECT colour
  SOURCES unit/KTDynamicColorTest.cpp unit/PlainColorTest.cpp
  USES kt_color)
find_package(Qt6 6.4 REQUIRED COMPONENTS Widgets)
kt_test(colour_contract_test KIND contract SUBJECT colour
  SOURCES contract/AppearanceContractTest.cpp contract/ColoredWidgetsTest.cpp
  USES kt_color kt_views kt_platform_linux_ui Qt6::Widgets)

# Arithmetic against others', and the window on a desktop that changes its colours.
pkg_check_modules(KT_LCMS REQUIRED IMPORTED_TARGET lcms2)
kt_test(colour_adapter_test KIND adapter SUBJECT colour
  SOURCES adapters/colour/ColorOracleTest.cpp adapters/colour/LiveColorTest.cpp
  USES kt_color kt_test_support Qt6::Gui PkgConfig::KT_LCMS)

# Started by the tests.
find_package(Qt6 6.4 REQUIRED COMPONENTS DBus)
add_executable(colour_probe adapters/colour/ColorProbe.cpp)
target_link_libraries(colour_probe PRIVATE kt_installer kt_platform_linux_ui kt_platform_linux_desktop Qt6::Widgets)
add_executable(colour_portal_probe adapters/window/PortalProbe.cpp)
target_link_libraries(colour_portal_probe PRIVATE Qt6::DBus)
target_compile_definitions(colour_adapter_test PRIVATE
  KT_WINDOW_PROBE="$<TARGET_FILE:colour_probe>" KT_PORTAL_PROBE="$<TARGET_FILE:colour_portal_probe>"
  KT_INSTALLER_PROGRAM="$<TARGET_FILE:HalvornInstaller>")
add_dependencies(colour_adapter_test colour_probe colour_portal_probe HalvornInstaller)
