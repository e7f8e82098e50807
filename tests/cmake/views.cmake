# The operations on views: on fakes.
kt_test(views_unit_test KIND unit SUBJECT views
  SOURCES unit/ViewExtensionsTest.cpp
  USES kt_views)
