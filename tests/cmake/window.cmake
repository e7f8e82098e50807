# The window, its images and documents.
find_package(Qt6 6.4 REQUIRED COMPONENTS Widgets)
add_executable(window_probe adapters/window/WindowProbe.cpp)
target_link_libraries(window_probe PRIVATE kt_platform_linux_ui kt_platform_linux_desktop Qt6::Widgets)
