# Tests of the description of the interface: what the headers declare, the library shows, and nothing else.

set(interface ${CMAKE_CURRENT_SOURCE_DIR}/interface)
set(python ${Python3_EXECUTABLE} -B)

add_test(NAME Interface.IsDeclaredToTheLetter
         COMMAND ${python} ${interface}/check-signatures.py ${CMAKE_SOURCE_DIR}/src/api ${CMAKE_SOURCE_DIR}/../shared/api-signatures.h)
set_tests_properties(Interface.IsDeclaredToTheLetter PROPERTIES SKIP_RETURN_CODE 77)

add_test(NAME Interface.IsAllThatTheLibraryShows
         COMMAND ${python} ${interface}/check-exports.py $<TARGET_FILE:QRV> ${QRV_INTERFACE}/interface.json
                 ${QRV_INSTALLED}/${CMAKE_INSTALL_INCLUDEDIR}/QRV)
set_tests_properties(Interface.IsAllThatTheLibraryShows PROPERTIES FIXTURES_REQUIRED installed)

add_test(NAME Interface.IsDescribedFromItsSources COMMAND ${python} ${interface}/DescriptionTest.py)
