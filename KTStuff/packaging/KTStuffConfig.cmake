# find_package(KTStuff 1 [COMPONENTS Text Bundles Process Sound Appearance KTStuff]): the targets KTStuff::Text and so on.
# KTSTUFF_USE_STATIC_LIBS makes them the static libraries. The toolkit is looked for only where it has to be linked.
include(CMakeFindDependencyMacro)
if(KTSTUFF_USE_STATIC_LIBS)
  if(NOT KTStuff_FIND_COMPONENTS OR "Appearance" IN_LIST KTStuff_FIND_COMPONENTS
     OR "KTStuff" IN_LIST KTStuff_FIND_COMPONENTS)
    find_dependency(Qt6 COMPONENTS Widgets DBus)
  endif()
  include(${CMAKE_CURRENT_LIST_DIR}/KTStuffStatic.cmake)
else()
  include(${CMAKE_CURRENT_LIST_DIR}/KTStuffShared.cmake)
endif()
foreach(part ${KTStuff_FIND_COMPONENTS})
  if(NOT TARGET KTStuff::${part})
    set(KTStuff_FOUND FALSE)
    set(KTStuff_NOT_FOUND_MESSAGE "KTStuff has no part '${part}'")
  endif()
endforeach()
