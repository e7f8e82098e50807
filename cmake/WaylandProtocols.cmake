# kt_wayland_protocols(TARGET XML ...): a library of what wayland-scanner makes of the descriptions, linked by the target,
# which includes "NAME-client-protocol.h" for each NAME.xml.
find_program(KT_WAYLAND_SCANNER wayland-scanner REQUIRED)
pkg_get_variable(folder wayland-protocols pkgdatadir)
set(KT_WAYLAND_PROTOCOLS ${folder} CACHE INTERNAL "Where the descriptions of the common protocols lie")

function(kt_wayland_protocols target)
  set(folder ${PROJECT_BINARY_DIR}/wayland/${target})
  file(MAKE_DIRECTORY ${folder})
  set(made)
  foreach(description ${ARGN})
    get_filename_component(description ${description} ABSOLUTE)
    get_filename_component(name ${description} NAME_WE)
    set(header ${folder}/${name}-client-protocol.h)
    set(code ${folder}/${name}-protocol.c)
    add_custom_command(OUTPUT ${header} COMMAND ${KT_WAYLAND_SCANNER} client-header ${description} ${header}
      DEPENDS ${description} VERBATIM)
    add_custom_command(OUTPUT ${code} COMMAND ${KT_WAYLAND_SCANNER} private-code ${description} ${code}
      DEPENDS ${description} VERBATIM)
    list(APPEND made ${header} ${code})
  endforeach()
  add_library(${target}_protocols STATIC ${made})
  target_include_directories(${target}_protocols SYSTEM PUBLIC ${folder})
  target_link_libraries(${target}_protocols PUBLIC PkgConfig::KT_WAYLAND)
  target_link_libraries(${target} PRIVATE ${target}_protocols)
endfunction()
