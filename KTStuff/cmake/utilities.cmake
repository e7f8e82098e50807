# Versions stand alone, so that what needs only them does not link the process model.
kt_library(kt_utilities_versions SOURCES
  KTClasses/KTUtilitiesNumericOrder.cpp KTClasses/KTUtilitiesVersions.cpp
  USES kt_core)
add_library(kt_utilities INTERFACE)
target_link_libraries(kt_utilities INTERFACE kt_utilities_versions)
