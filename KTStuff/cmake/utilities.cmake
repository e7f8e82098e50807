# Versions stand alone, so that what needs only them does not link the process model.
kt_library(kt_utilities_versions SOURCES
  KTClasses/KTUtilitiesNumericOrder.cpp KTClasses/KTUtilitiesVersions.cpp
  USES kt_core)
kt_library(kt_utilities_theme SOURCES KTClasses/KTUtilitiesTheme.cpp USES kt_utilities_versions)
kt_library(kt_utilities SOURCES
  KTClasses/KTUtilitiesDesktop.cpp KTClasses/KTUtilitiesLaunching.cpp KTClasses/KTUtilitiesScripts.cpp
  USES kt_utilities_theme kt_process)
