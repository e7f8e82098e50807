# The installer as a bundle: the program in the folder of its system, everything else in Contents/Resources.
set(contents ${KT_BUNDLE_DIR}/Contents)

set_target_properties(HalvornInstaller PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${contents}/${KT_PROGRAM_FOLDER})
if(KT_BUNDLE_PARTS)
  add_dependencies(HalvornInstaller ${KT_BUNDLE_PARTS})
endif()

configure_file(${PROJECT_SOURCE_DIR}/Resources/Info.plist.in ${contents}/Info.plist @ONLY)

set(resources InstallerWindow.xml HalvornInstaller.icns AlertStopIcon.png AlertStopIcon@2x.png AlertStopIcon@3x.png
  Checkmark.png Checkmark@2x.png Checkmark@3x.png GenericApplication.png GenericApplication@2x.png GenericApplication@3x.png)
# A language is a folder with its tables.
file(GLOB tables CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR}/Resources
  ${PROJECT_SOURCE_DIR}/Resources/*.lproj/*.strings)
list(APPEND resources ${tables})
set(copies)
foreach(file ${resources} sounds/Done.aiff sounds/SoundOfSilence.aiff)
  string(REGEX REPLACE "^sounds/" "" place ${file})
  add_custom_command(OUTPUT ${contents}/Resources/${place} DEPENDS ${PROJECT_SOURCE_DIR}/Resources/${file}
    COMMAND ${CMAKE_COMMAND} -E copy ${PROJECT_SOURCE_DIR}/Resources/${file} ${contents}/Resources/${place})
  list(APPEND copies ${contents}/Resources/${place})
endforeach()
add_custom_target(installer_resources DEPENDS ${copies})
add_dependencies(HalvornInstaller installer_resources)
