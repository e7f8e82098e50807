# The class library as other programs get it: KTStuff::Text, Bundles, Process, Sound, Appearance, and KTStuff for
# everything, each shared and static, installed for find_package and pkg-config. What is installed comes in four components:
# runtime (what programs load), development (what they are built with), documentation, tools.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)
option(KTSTUFF_USE_STATIC_LIBS "KTStuff::* are the static libraries" OFF)
set(KTSTUFF_HEADERS ${CMAKE_INSTALL_INCLUDEDIR}/ktstuff-${PROJECT_VERSION_MAJOR})
set(KTSTUFF_PACKAGE ${CMAKE_INSTALL_LIBDIR}/cmake/KTStuff)

# What both kinds of one library tell their users.
function(kt_public_library target kind name)
  target_include_directories(${target} INTERFACE
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}> $<INSTALL_INTERFACE:${KTSTUFF_HEADERS}>)
  target_compile_features(${target} INTERFACE cxx_std_20)
  string(REGEX REPLACE "^KTStuff$" "" part ${name})
  set_target_properties(${target} PROPERTIES OUTPUT_NAME KTStuff${part} EXPORT_NAME ${name} LINKER_LANGUAGE CXX
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR} INSTALL_RPATH "$ORIGIN" BUILD_RPATH_USE_ORIGIN ON AUTOMOC OFF)
  install(TARGETS ${target} EXPORT KTStuff${kind}
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
endfunction()

# kt_public(NAME CORE targets [ADAPTERS targets] [NEEDS names] [LIBRARIES names] [PACKAGES names]
# [MODULES targets]): CORE is what its headers declare, ADAPTERS what that stands on, NEEDS other libraries of these, LIBRARIES
# those of the system, PACKAGES the same where CMake finds them, MODULES what it loads when it is needed.
function(kt_public name)
  cmake_parse_arguments(ARG "" "" "CORE;ADAPTERS;NEEDS;LIBRARIES;PACKAGES;MODULES" ${ARGN})
  set(objects)
  foreach(target ${ARG_CORE})
    list(APPEND objects $<TARGET_OBJECTS:${target}>)
  endforeach()
  set(archives)
  foreach(target ${ARG_ADAPTERS})
    list(APPEND archives $<TARGET_OBJECTS:${target}>)
    if(TARGET ${target}_protocols)
      list(APPEND archives $<TARGET_OBJECTS:${target}_protocols>)
    endif()
  endforeach()
  add_library(ktstuff_${name}_static STATIC ${objects} ${archives})
  add_library(ktstuff_${name}_shared SHARED ${objects})
  kt_public_library(ktstuff_${name}_static Static ${name})
  kt_public_library(ktstuff_${name}_shared Shared ${name})
  foreach(other ${ARG_NEEDS})
    target_link_libraries(ktstuff_${name}_static INTERFACE ktstuff_${other}_static)
    target_link_libraries(ktstuff_${name}_shared PUBLIC ktstuff_${other}_shared)
  endforeach()
  target_link_libraries(ktstuff_${name}_static INTERFACE ${ARG_LIBRARIES} ${ARG_PACKAGES})
  # Of the adapters only what is asked for is taken, and what a library below has is not taken again.
  foreach(target ${ARG_ADAPTERS})
    target_link_libraries(ktstuff_${name}_shared PRIVATE $<BUILD_INTERFACE:${target}>)
  endforeach()
  set_property(GLOBAL APPEND PROPERTY KTSTUFF_ARCHIVES ${ARG_CORE} ${ARG_ADAPTERS})
  # They lie below the library where it is built as where it is installed, for who adds this tree to a tree of their own.
  foreach(module ${ARG_MODULES})
    add_dependencies(ktstuff_${name}_static ${module})
    add_dependencies(ktstuff_${name}_shared ${module})
    set(below $<TARGET_FILE_DIR:ktstuff_${name}_shared>/ktstuff-${PROJECT_VERSION_MAJOR})
    add_custom_command(TARGET ktstuff_${name}_shared POST_BUILD VERBATIM
      COMMAND ${CMAKE_COMMAND} -E make_directory ${below}
      COMMAND ${CMAKE_COMMAND} -E create_symlink $<TARGET_FILE:${module}> ${below}/$<TARGET_FILE_NAME:${module}>)
  endforeach()
  if(KTSTUFF_USE_STATIC_LIBS)
    add_library(KTStuff::${name} ALIAS ktstuff_${name}_static)
  else()
    add_library(KTStuff::${name} ALIAS ktstuff_${name}_shared)
  endif()
  kt_pkg_config(${name} "${ARG_NEEDS}" "${ARG_LIBRARIES}" "${ARG_PACKAGES}")
endfunction()

# Which symbols can be seen: the public ones, and for our own libraries whatever else lies in any of the archives: a library
# takes of the archives of another one what that has left.
function(kt_exports)
  get_property(archives GLOBAL PROPERTY KTSTUFF_ARCHIVES)
  set(files)
  foreach(archive ${archives})
    list(APPEND files $<TARGET_FILE:${archive}>)
  endforeach()
  set(script ${PROJECT_BINARY_DIR}/exports.map)
  set(exports ${PROJECT_SOURCE_DIR}/KTStuff/packaging/exports.sh)
  add_custom_command(OUTPUT ${script} DEPENDS ${archives} ${exports} VERBATIM
    COMMAND ${exports} ${PROJECT_VERSION_MAJOR} ${CMAKE_NM} ${PROJECT_SOURCE_DIR} ${files} > ${script})
  add_custom_target(ktstuff_exports DEPENDS ${script})
  foreach(name ${ARGN})
    add_dependencies(ktstuff_${name}_shared ktstuff_exports)
    # Within a library a call goes straight to what is called.
    target_link_options(ktstuff_${name}_shared PRIVATE -Wl,--version-script=${script} -Wl,-Bsymbolic-functions)
    set_target_properties(ktstuff_${name}_shared PROPERTIES LINK_DEPENDS ${script})
  endforeach()
endfunction()

function(kt_pkg_config name needs libraries packages)
  string(TOLOWER "ktstuff-${name}" module)
  string(REPLACE "ktstuff-ktstuff" "ktstuff" module ${module})
  string(REGEX REPLACE "^KTStuff$" "" part ${name})
  list(TRANSFORM needs TOLOWER)
  list(TRANSFORM needs PREPEND ktstuff-)
  list(JOIN needs " " KTSTUFF_REQUIRES)
  list(TRANSFORM libraries PREPEND -l)
  list(JOIN libraries " " KTSTUFF_LIBRARIES)
  string(REGEX REPLACE "Qt6::" "Qt6" KTSTUFF_REQUIRES_PRIVATE "${packages}")
  string(REPLACE ";" " " KTSTUFF_REQUIRES_PRIVATE "${KTSTUFF_REQUIRES_PRIVATE}")
  set(KTSTUFF_NAME KTStuff${part})
  configure_file(${PROJECT_SOURCE_DIR}/KTStuff/packaging/ktstuff.pc.in ${PROJECT_BINARY_DIR}/pkgconfig/${module}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/pkgconfig/${module}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
    COMPONENT development)
endfunction()

find_package(Qt6 6.4 REQUIRED COMPONENTS Widgets DBus)
kt_public(Text CORE kt_core kt_text kt_system_text
  ADAPTERS kt_platform_running kt_platform_rights kt_platform_files kt_platform_session kt_platform_text
  LIBRARIES icui18n icuuc xml2 xkbcommon-x11 xkbcommon xcb MODULES HalvornDigests)
kt_public(Bundles CORE kt_utilities_versions kt_system_bundles ADAPTERS kt_platform_bundles NEEDS Text LIBRARIES expat)
kt_public(Process CORE kt_process kt_system_process ADAPTERS kt_platform_processes NEEDS Bundles Text
  LIBRARIES dbus-1 xcb-icccm xcb-ewmh xcb-res wayland-client xcb)
kt_public(Sound CORE kt_sound kt_system_sound ADAPTERS kt_platform_sound NEEDS Bundles Text
  MODULES HalvornSound)
kt_public(Appearance CORE kt_utilities_theme kt_color kt_views kt_system_appearance
  ADAPTERS kt_platform_color kt_platform_window NEEDS Bundles Text LIBRARIES png wayland-client xcb
  PACKAGES Qt6::Widgets Qt6::DBus)
kt_public(KTStuff CORE kt_utilities kt_installer_interface kt_system NEEDS Process Sound Appearance Bundles Text
  LIBRARIES xcb-screensaver xcb-xfixes xcb PACKAGES Qt6::DBus Qt6::Core)
target_link_libraries(ktstuff_KTStuff_shared PRIVATE $<BUILD_INTERFACE:kt_platform_session>)
kt_exports(Text Bundles Process Sound Appearance KTStuff)

foreach(folder Core KTStuff/KTClasses KTStuff/CocoaExtensions Platform)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/${folder}/ DESTINATION ${KTSTUFF_HEADERS}/${folder} COMPONENT development
    FILES_MATCHING PATTERN "*.h" PATTERN linux EXCLUDE PATTERN posix EXCLUDE PATTERN null EXCLUDE PATTERN mac EXCLUDE)
endforeach()
install(FILES ${PROJECT_SOURCE_DIR}/KTStuff/KTSystem.h DESTINATION ${KTSTUFF_HEADERS}/KTStuff COMPONENT development)
install(TARGETS HalvornSound HalvornDigests
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/ktstuff-${PROJECT_VERSION_MAJOR} COMPONENT runtime)
foreach(kind Shared Static)
  install(EXPORT KTStuff${kind} NAMESPACE KTStuff:: FILE KTStuff${kind}.cmake DESTINATION ${KTSTUFF_PACKAGE}
    COMPONENT development)
endforeach()
write_basic_package_version_file(${PROJECT_BINARY_DIR}/KTStuffConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/KTStuffConfigVersion.cmake ${PROJECT_SOURCE_DIR}/KTStuff/packaging/KTStuffConfig.cmake
  DESTINATION ${KTSTUFF_PACKAGE} COMPONENT development)

# The manual, when it was asked for: `cmake --build ... --target ktstuff_manual`.
add_custom_target(ktstuff_manual COMMAND ${PROJECT_SOURCE_DIR}/docs/reference/make ${PROJECT_BINARY_DIR}/manual VERBATIM)
set(KTSTUFF_DOC ${CMAKE_INSTALL_DATAROOTDIR}/doc/ktstuff)
install(DIRECTORY ${PROJECT_BINARY_DIR}/manual/html DESTINATION ${KTSTUFF_DOC} COMPONENT documentation OPTIONAL)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples DESTINATION ${KTSTUFF_DOC} COMPONENT documentation)
