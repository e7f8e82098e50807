# The window, its images and documents.
find_package(Qt6 6.4 REQUIRED COMPONENTS Widgets)
set(window_ui kt_platform_linux_ui kt_platform_linux_desktop Qt6::Widgets)
kt_test(window_unit KIND unit SUBJECT window
  SOURCES unit/RtfReaderTest.cpp unit/ReadMeDocumentTest.cpp unit/QtImagesTest.cpp unit/InstallerWindowTest.cpp
          unit/LocalizableStringsTest.cpp
  USES ${window_ui})

kt_test(window_contract KIND contract SUBJECT window SOURCES contract/WindowContractTest.cpp USES ${window_ui})

add_executable(window_probe adapters/window/WindowProbe.cpp)
target_link_libraries(window_probe PRIVATE ${window_ui})
