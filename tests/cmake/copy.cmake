# The copy, the removal and the Trash on real disks.
kt_test(copy_adapter KIND adapter SUBJECT copy
  SOURCES adapters/copy/TreeCopyTest.cpp adapters/copy/TreeRemovalTest.cpp adapters/copy/XdgTrashTest.cpp
    support/SampleTrees.cpp
  USES kt_platform_posix kt_test_support)
