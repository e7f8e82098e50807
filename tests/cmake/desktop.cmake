kt_test(desktop_unit_test KIND unit SUBJECT desktop
  SOURCES unit/KTUtilitiesDesktopTest.cpp unit/KTUtilitiesLaunchingTest.cpp
  USES kt_utilities)
