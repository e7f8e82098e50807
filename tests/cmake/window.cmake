# The window, its images and documents.
find_package(Qt6 6.4 REQUIRED COMPONENTS Widgets DBus)
pkg_check_modules(KT_WINDOW_ATSPI REQUIRED IMPORTED_TARGET atspi-2 gobject-2.0 glib-2.0)
set(window_ui kt_platform_linux_ui kt_platform_linux_desktop Qt6::Widgets)
kt_test(window_unit KIND unit SUBJECT window
  SOURCES unit/RtfReaderTest.cpp unit/ReadMeDocumentTest.cpp unit/QtImagesTest.cpp unit/InstallerWindowTest.cpp
          unit/LocalizableStringsTest.cpp
  USES ${window_ui})
kt_test(window_contract KIND contract SUBJECT window SOURCES contract/WindowContractTest.cpp USES ${window_ui})
kt_test(window_adapter KIND adapter SUBJECT window
  SOURCES adapters/window/LiveWindowTest.cpp adapters/window/AccessibleWindowTest.cpp
          adapters/window/WindowPicturesTest.cpp
  USES kt_test_support)

# Started by the tests.
add_executable(window_probe adapters/window/WindowProbe.cpp)
target_link_libraries(window_probe PRIVATE ${window_ui})
add_executable(window_portal_probe adapters/window/PortalProbe.cpp)
target_link_libraries(window_portal_probe PRIVATE Qt6::DBus)
add_executable(window_announcement_probe adapters/window/AnnouncementProbe.cpp)
target_link_libraries(window_announcement_probe PRIVATE PkgConfig::KT_WINDOW_ATSPI)
add_executable(window_accessible_probe support/accessible_probe.cpp)
target_link_libraries(window_accessible_probe PRIVATE PkgConfig::KT_WINDOW_ATSPI)
target_compile_definitions(window_adapter PRIVATE
  KT_WINDOW_PROBE="$<TARGET_FILE:window_probe>" KT_PORTAL_PROBE="$<TARGET_FILE:window_portal_probe>"
  KT_ANNOUNCEMENT_PROBE="$<TARGET_FILE:window_announcement_probe>"
  KT_ACCESSIBLE_PROBE="$<TARGET_FILE:window_accessible_probe>")
add_dependencies(window_adapter window_probe window_portal_probe window_announcement_probe window_accessible_probe)
