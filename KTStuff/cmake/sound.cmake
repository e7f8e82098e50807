kt_library(kt_sound SOURCES
  CocoaExtensions/SoundExtensionsFiles.cpp CocoaExtensions/SoundExtensionsPlaying.cpp
  CocoaExtensions/SoundExtensionsDevices.cpp
  USES kt_core kt_utilities_versions)
