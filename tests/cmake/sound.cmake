kt_test(sound_unit_test KIND unit SUBJECT sound SOURCES
  unit/SoundExtensionsFilesTest.cpp unit/SoundExtensionsPlayingTest.cpp unit/SoundExtensionsDevicesTest.cpp
  unit/CompletionSoundTest.cpp unit/TaskGateTest.cpp ${CMAKE_SOURCE_DIR}/Sources/CompletionSound.cpp
  USES kt_sound)
