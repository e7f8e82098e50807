# The install function against fakes, and the file operations behind it, fake and real.
kt_test(install_unit KIND unit SUBJECT install
  SOURCES unit/InstallFunctionTest.cpp
  USES kt_install)
kt_test(install_contract KIND contract SUBJECT install
  SOURCES contract/FileManagerContractTest.cpp contract/TrashContractTest.cpp
  USES kt_install kt_platform_posix)
