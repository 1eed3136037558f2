# Tests of what a host gets: the installed tree, found through CMake and through pkg-config.

set(QRV_INSTALLED ${CMAKE_BINARY_DIR}/installed)
set(consumer ${CMAKE_CURRENT_SOURCE_DIR}/consumer)
set(sanitizer "")
if(QRV_SANITIZE)
  set(sanitizer -fsanitize=address,undefined)
endif()

add_test(NAME Install.LaysDownTheTree
         COMMAND sh -c [[rm -rf "$0" && exec "$1" --install "$2" --prefix "$0"]] ${QRV_INSTALLED} ${CMAKE_COMMAND} ${CMAKE_BINARY_DIR})
set_tests_properties(Install.LaysDownTheTree PROPERTIES FIXTURES_SETUP installed)

add_test(NAME Install.ServesHostsThroughCMake
         COMMAND ${CMAKE_CTEST_COMMAND} --build-and-test ${consumer} ${CMAKE_BINARY_DIR}/consumer --build-generator ${CMAKE_GENERATOR}
                 --build-options -DCMAKE_PREFIX_PATH=${QRV_INSTALLED} -DCMAKE_CXX_COMPILER=${CMAKE_CXX_COMPILER}
                                 -DCMAKE_CXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER} -DCMAKE_CXX_FLAGS=${sanitizer}
                 --test-command ${CMAKE_CTEST_COMMAND} --output-on-failure)
# Builds the whole library once more, so joined and without optimising, and not a second time for the sanitizers.
if(NOT QRV_SANITIZE)
  add_test(NAME Install.ServesHostsThatBuildItThemselves
           COMMAND ${CMAKE_CTEST_COMMAND} --build-and-test ${consumer}/within ${CMAKE_BINARY_DIR}/within --build-generator ${CMAKE_GENERATOR}
                   --build-options -DQRV_SOURCES=${CMAKE_SOURCE_DIR} -DQRV_WERROR=${QRV_WERROR} -DCMAKE_BUILD_TYPE=Debug
                                   -DCMAKE_CXX_FLAGS_DEBUG=-O0 -DCMAKE_UNITY_BUILD=ON -DCMAKE_UNITY_BUILD_BATCH_SIZE=10
                                   -DCMAKE_CXX_COMPILER=${CMAKE_CXX_COMPILER} -DCMAKE_CXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER}
                   --test-command ${CMAKE_CTEST_COMMAND} --output-on-failure)
endif()
add_test(NAME Install.ServesHostsThroughPkgConfig
         COMMAND ${consumer}/pkg-config-host.sh ${QRV_INSTALLED} ${CMAKE_INSTALL_LIBDIR} ${consumer}/Host.cpp
                 ${CMAKE_BINARY_DIR}/pkg-config-host ${CMAKE_CXX_COMPILER} ${sanitizer})
set_tests_properties(Install.ServesHostsThroughCMake Install.ServesHostsThroughPkgConfig PROPERTIES FIXTURES_REQUIRED installed)

# The host that the README shows is the one that is built here.
add_test(NAME Readme.ShowsTheHostThatIsTested
         COMMAND sh -c [[sed -n '/^```cpp$/,/^```$/{/^```/!p}' "$0" | diff - "$1"]] ${CMAKE_SOURCE_DIR}/README.md ${consumer}/Host.cpp)
