# The process model.
kt_library(kt_process SOURCES
  KTClasses/KTProcess.cpp KTClasses/KTProcessClass.cpp KTClasses/KTProcessAttributes.cpp
  KTClasses/KTProcessVersion.cpp KTClasses/KTProcessQuitting.cpp KTClasses/KTProcessEvents.cpp
  KTClasses/KTProcessAccessibility.cpp KTClasses/KTCompatibility.cpp
  USES kt_core kt_text)
