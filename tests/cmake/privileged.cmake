# Administrator rights: a policy daemon of the tests' own, the authorizer on it, and the tool under attack.
find_package(PkgConfig REQUIRED)
pkg_check_modules(KT_POLKIT_AGENT REQUIRED IMPORTED_TARGET polkit-agent-1)
add_library(kt_polkit_world STATIC support/PolkitWorld.cpp support/PrivateMedium.cpp)
target_link_libraries(kt_polkit_world PUBLIC kt_test_support)
add_executable(kt_polkit_agent support/PolkitAgent.cpp)
target_link_libraries(kt_polkit_agent PRIVATE PkgConfig::KT_POLKIT_AGENT)

add_executable(kt_authorize_probe adapters/AuthorizeProbe.cpp)
target_link_libraries(kt_authorize_probe PRIVATE kt_platform_linux_polkit)
add_executable(kt_zoo_tool adapters/ZooTool.cpp)
kt_test(kt_privileged_adapter_tests KIND adapter SUBJECT privileged
  SOURCES adapters/PolkitAuthorizerTest.cpp
  USES kt_polkit_world)
add_dependencies(kt_privileged_adapter_tests kt_polkit_agent kt_authorize_probe kt_zoo_tool)
kt_test(kt_privileged_contract_tests KIND contract SUBJECT privileged
  SOURCES contract/AuthorizerContractTest.cpp
  USES kt_polkit_world kt_core)
add_dependencies(kt_privileged_contract_tests kt_polkit_agent kt_authorize_probe kt_zoo_tool)
kt_test(kt_privileged_unit_tests KIND unit SUBJECT privileged
  SOURCES unit/PolkitTextsTest.cpp
  USES kt_platform_linux_polkit kt_privileged_process)

# What the administrator's tool must withstand, and a tool that does not.
add_library(kt_naive_install STATIC adapters/attacks/NaiveInstall.cpp)
target_include_directories(kt_naive_install PUBLIC ${CMAKE_SOURCE_DIR})
add_executable(kt_naive_tool adapters/attacks/NaiveTool.cpp)
target_link_libraries(kt_naive_tool PRIVATE kt_naive_install)
kt_test(kt_attack_tests KIND adapter SUBJECT privileged
  SOURCES adapters/attacks/AttackScene.cpp adapters/attacks/FileAttacksTest.cpp
    adapters/attacks/RaceAttacksTest.cpp adapters/attacks/StartAttacksTest.cpp
    adapters/attacks/DiskAttacksTest.cpp adapters/attacks/PkexecAttacksTest.cpp
    adapters/attacks/InstallCasesTest.cpp
  USES kt_polkit_world kt_naive_install kt_privileged_process)
target_compile_definitions(kt_attack_tests PRIVATE KT_TRAIN="$<TARGET_FILE:train>")
add_executable(kt_secured_probe adapters/attacks/SecuredProbe.cpp)
target_link_libraries(kt_secured_probe PRIVATE kt_privileged_process)
add_library(kt_planted SHARED adapters/attacks/Planted.cpp)
target_compile_options(kt_planted PRIVATE -fno-sanitize=all)
target_link_options(kt_planted PRIVATE -fno-sanitize=all)
add_dependencies(kt_attack_tests train kt_naive_tool kt_secured_probe kt_planted)
