# The install function against fakes.
kt_test(install_unit KIND unit SUBJECT install
  SOURCES unit/InstallFunctionTest.cpp
  USES kt_install)
