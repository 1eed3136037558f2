# Every exported call under random, hostile and starving use. What is called comes from the description of the
# interface, so that a new call takes part without a line written for it.

find_package(rapidcheck REQUIRED)
file(GLOB QRV_PROOF_SOURCES CONFIGURE_DEPENDS proof/*.cpp)
qrv_add_test_program(qrv_proof ${QRV_PROOF_SOURCES})
add_dependencies(qrv_proof qrv_interface)
target_include_directories(qrv_proof PRIVATE ${CMAKE_SOURCE_DIR}/tools ${QRV_INTERFACE})
target_link_libraries(qrv_proof PRIVATE rapidcheck)
