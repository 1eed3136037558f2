# Every exported call under random, hostile and starving use. What is called comes from the description of the
# interface, so that a new call takes part without a line written for it.

find_package(rapidcheck REQUIRED)
find_package(OpenSSL REQUIRED)

# What every exported call is and with what it can be called. Of the library it knows the exported headers alone, so that
# tests of the tools use it too.
add_library(qrv_calls OBJECT proof/ArgumentSource.cpp proof/Calls.cpp)
add_dependencies(qrv_calls qrv_interface)
target_include_directories(qrv_calls PUBLIC ${CMAKE_CURRENT_SOURCE_DIR} ${CMAKE_SOURCE_DIR}/tools ${QRV_INTERFACE}/..
                                            ${QRV_FORWARDING_INCLUDE})
target_link_libraries(qrv_calls PUBLIC nlohmann_json::nlohmann_json)
qrv_compile_options(qrv_calls)

# Sessions of such calls, with a look into the library after each. Models are summed up just as the replay does it.
add_library(qrv_sessions OBJECT proof/Session.cpp ${CMAKE_SOURCE_DIR}/tools/replay/ModelReport.cpp)
add_dependencies(qrv_sessions qrv_interface)
target_include_directories(qrv_sessions PUBLIC ${CMAKE_SOURCE_DIR}/src)
target_link_libraries(qrv_sessions PUBLIC qrv_calls OpenSSL::Crypto)
qrv_compile_options(qrv_sessions)

file(GLOB QRV_PROOF_SOURCES CONFIGURE_DEPENDS proof/*.cpp)
list(FILTER QRV_PROOF_SOURCES EXCLUDE REGEX "/(ArgumentSource|Calls|Session)\\.cpp$")
qrv_add_test_program(qrv_proof ${QRV_PROOF_SOURCES})
set_property(SOURCE proof/Isolated.cpp APPEND PROPERTY COMPILE_DEFINITIONS QRV_REPLAY="$<TARGET_FILE:qrv-replay>")
add_dependencies(qrv_proof qrv-replay)
target_link_libraries(qrv_proof PRIVATE qrv_calls qrv_sessions rapidcheck)

# 2,000 sessions of 40 calls on average, in parts that run beside one another; under the sanitizers fewer.
if(QRV_SANITIZE)
  set(sessions 60)
else()
  set(sessions 500)
endif()
foreach(seed RANGE 1 4)
  add_test(NAME RandomHistories.Seed${seed} COMMAND qrv_proof --gtest_filter=RandomHistories.*)
  set_tests_properties(RandomHistories.Seed${seed} PROPERTIES ENVIRONMENT "RC_PARAMS=seed=${seed} max_success=${sessions}" COST 1000)
endforeach()

# The other proofs go through all kinds of call one by one, in two processes.
foreach(part RANGE 1)
  add_test(NAME CallProofs.Part${part} COMMAND qrv_proof --gtest_filter=-RandomHistories.*)
  set_tests_properties(CallProofs.Part${part} PROPERTIES ENVIRONMENT "GTEST_TOTAL_SHARDS=2;GTEST_SHARD_INDEX=${part}" COST 500)
endforeach()
