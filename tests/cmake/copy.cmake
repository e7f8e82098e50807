# The copy, the removal and the Trash on real disks.
kt_test(copy_adapter KIND adapter SUBJECT copy
  SOURCES adapters/copy/TreeCopyTest.cpp adapters/copy/CopyQueueTest.cpp adapters/copy/TreeRemovalTest.cpp
    adapters/copy/XdgTrashTest.cpp support/SampleTrees.cpp
  USES kt_platform_posix kt_test_support)

# On file systems of their own, which only the administrator can mount.
kt_test(copy_mounted KIND adapter SUBJECT copy
  SOURCES adapters/copy/FidelityTest.cpp adapters/copy/DisksTest.cpp adapters/copy/MountedScene.cpp
    support/SampleTrees.cpp support/OddTree.cpp support/TreeCompare.cpp
  USES kt_platform_posix kt_test_support)
add_dependencies(copy_mounted train)

# With one call of the system going wrong at a time.
kt_test(copy_faults KIND adapter SUBJECT copy TIMEOUT 120
  SOURCES adapters/copy/FaultSweepTest.cpp adapters/copy/SweepScene.cpp adapters/copy/MountedScene.cpp
    support/TreeCompare.cpp
  USES kt_platform_posix kt_test_support)
add_dependencies(copy_faults train)
foreach(program copy_mounted copy_faults)
  target_compile_definitions(${program} PRIVATE KT_TRAIN="$<TARGET_FILE:train>")
endforeach()
