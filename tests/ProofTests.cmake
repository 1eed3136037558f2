# Every exported call under random, hostile and starving use. What is called comes from the description of the
# interface, so that a new call takes part without a line written for it.

find_package(rapidcheck REQUIRED)
find_package(OpenSSL REQUIRED)
file(GLOB QRV_PROOF_SOURCES CONFIGURE_DEPENDS proof/*.cpp)
# Models are summed up just as the replay does it.
qrv_add_test_program(qrv_proof ${QRV_PROOF_SOURCES} ${CMAKE_SOURCE_DIR}/tools/replay/ModelReport.cpp)
set_property(SOURCE proof/Isolated.cpp APPEND PROPERTY COMPILE_DEFINITIONS QRV_REPLAY="$<TARGET_FILE:qrv-replay>")
add_dependencies(qrv_proof qrv_interface qrv-replay)
target_include_directories(qrv_proof PRIVATE ${CMAKE_SOURCE_DIR}/tools ${QRV_INTERFACE}/..)
target_link_libraries(qrv_proof PRIVATE rapidcheck OpenSSL::Crypto)

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
