# Colors and what depends on the appearance in force.
kt_library(kt_color SOURCES
  KTClasses/ColorCatalog.cpp KTClasses/KTDynamicColor.cpp KTClasses/KTDynamicColorClass.cpp
  KTClasses/PlainColor.cpp
  USES kt_utilities_theme)
