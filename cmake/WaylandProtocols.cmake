# kt_wayland_protocols(TARGET XML ...): adds to the target what wayland-scanner makes of the descriptions, and lets it
# include "NAME-client-protocol.h" for each NAME.xml.
find_program(KT_WAYLAND_SCANNER wayland-scanner REQUIRED)
pkg_get_variable(folder wayland-protocols pkgdatadir)
set(KT_WAYLAND_PROTOCOLS ${folder} CACHE INTERNAL "Where the descriptions of the common protocols lie")

function(kt_wayland_protocols target)
  set(folder ${CMAKE_BINARY_DIR}/wayland/${target})
  file(MAKE_DIRECTORY ${folder})
  foreach(description ${ARGN})
    get_filename_component(description ${description} ABSOLUTE)
    get_filename_component(name ${description} NAME_WE)
    set(header ${folder}/${name}-client-protocol.h)
    set(code ${folder}/${name}-protocol.c)
    add_custom_command(OUTPUT ${header} COMMAND ${KT_WAYLAND_SCANNER} client-header ${description} ${header}
      DEPENDS ${description} VERBATIM)
    add_custom_command(OUTPUT ${code} COMMAND ${KT_WAYLAND_SCANNER} private-code ${description} ${code}
      DEPENDS ${description} VERBATIM)
    target_sources(${target} PRIVATE ${header} ${code})
    set_source_files_properties(${header} ${code} PROPERTIES SKIP_AUTOGEN ON)
  endforeach()
  target_include_directories(${target} SYSTEM PRIVATE ${folder})
endfunction()
