# The operations on views: on fakes, on the toolkit's views without a display and on an X server.
kt_test(views_unit_test KIND unit SUBJECT views
  SOURCES unit/ViewExtensionsTest.cpp
  USES kt_views)
find_package(Qt6 6.4 REQUIRED COMPONENTS Widgets)
kt_test(views_contract_test KIND contract SUBJECT views
  SOURCES contract/ViewsContractTest.cpp contract/ScrolledWidgetsTest.cpp
  USES kt_views kt_platform_linux_ui Qt6::Widgets)
kt_test(views_adapter_test KIND adapter SUBJECT views
  SOURCES adapters/views/ViewsOnAnXServerTest.cpp
  USES kt_test_support)
target_compile_definitions(views_adapter_test PRIVATE
  KT_VIEWS_CONTRACT_TEST="$<TARGET_FILE:views_contract_test>")
add_dependencies(views_adapter_test views_contract_test)
