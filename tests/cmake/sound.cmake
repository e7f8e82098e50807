# The sound category and the completion sound against fakes.
kt_test(sound_unit_test KIND unit SUBJECT sound SOURCES
  unit/SoundExtensionsFilesTest.cpp unit/SoundExtensionsPlayingTest.cpp unit/SoundExtensionsDevicesTest.cpp
  unit/CompletionSoundTest.cpp unit/TaskGateTest.cpp ${CMAKE_SOURCE_DIR}/Sources/CompletionSound.cpp
  USES kt_sound)

# What every sound system must do.
kt_test(sound_contract_test KIND contract SUBJECT sound SOURCES
  contract/SoundsContractTest.cpp support/SoundServer.cpp
  USES kt_platform_linux_audio kt_platform_posix kt_test_support PkgConfig::KT_PULSE)

# Real files, real servers and what they make heard.
kt_test(sound_adapter_test KIND adapter SUBJECT sound SOURCES
  adapters/SoundDecoderTest.cpp adapters/SoundEffectTest.cpp adapters/SoundLookupTest.cpp
  adapters/ShippedSoundsTest.cpp adapters/SoundModuleTest.cpp support/SoundServer.cpp ${CMAKE_SOURCE_DIR}/Sources/CompletionSound.cpp
  USES kt_sound kt_platform_linux_audio kt_platform_linux_loading kt_platform_linux_desktop kt_platform_posix
  kt_test_support PkgConfig::KT_PULSE)
target_compile_definitions(sound_adapter_test PRIVATE KT_MODULE_FOLDER="${KT_BUNDLE_DIR}/Contents/Linux")
add_dependencies(sound_adapter_test HalvornSound HalvornDigests)
