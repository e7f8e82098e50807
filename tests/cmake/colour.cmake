# Colours: on fakes, the appearances and drawing fake and real.
kt_test(colour_unit_test KIND unit SUBJECT colour
  SOURCES unit/KTDynamicColorTest.cpp unit/PlainColorTest.cpp
  USES kt_color)
