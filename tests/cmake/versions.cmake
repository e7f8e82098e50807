kt_test(versions_unit_test KIND unit SUBJECT versions
  SOURCES unit/KTUtilitiesVersionsTest.cpp
  USES kt_utilities_versions)
kt_test(versions_adapter_test KIND adapter SUBJECT versions
  SOURCES adapters/IcuVersionsTest.cpp
  USES kt_utilities_versions kt_platform_linux_text)
