kt_test(scripts_unit_test KIND unit SUBJECT scripts
  SOURCES unit/KTUtilitiesScriptsTest.cpp
  USES kt_utilities)
kt_test(scripts_contract_test KIND contract SUBJECT scripts
  SOURCES contract/TasksContractTest.cpp
  USES kt_platform_posix)
kt_test(scripts_adapter_test KIND adapter SUBJECT scripts
  SOURCES adapters/RealScriptsTest.cpp
  USES kt_utilities kt_platform_posix kt_test_support)
