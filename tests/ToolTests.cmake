# Tests of the tools, which are hosts of the library like any other: one program over what the tools consist of.

file(GLOB sources CONFIGURE_DEPENDS tools/*.cpp)
add_executable(qrv_tools_tests ${sources})
target_compile_definitions(qrv_tools_tests PRIVATE QRV_REPLAY="$<TARGET_FILE:qrv-replay>" QRV_REDUCE="$<TARGET_FILE:qrv-reduce>"
                                                   QRV_HOUSE="$<TARGET_FILE:house>")
target_link_libraries(qrv_tools_tests PRIVATE qrv_calls qrv_tools GTest::gtest GTest::gtest_main)
add_dependencies(qrv_tools_tests qrv-replay qrv-reduce house)
qrv_compile_options(qrv_tools_tests)
qrv_link_options(qrv_tools_tests)
gtest_discover_tests(qrv_tools_tests DISCOVERY_TIMEOUT 60)

# Writes the session that scripts/same_everywhere has different builds of the library make again.
add_executable(qrv_write_session determinism/WriteSession.cpp)
target_link_libraries(qrv_write_session PRIVATE qrv_calls qrv_tools)
qrv_compile_options(qrv_write_session)
qrv_link_options(qrv_write_session)
