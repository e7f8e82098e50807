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
  SOURCES adapters/colour/ColorOracleTest.cpp
  USES kt_color kt_test_support Qt6::Gui PkgConfig::KT_LCMS)
