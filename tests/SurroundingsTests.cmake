# Tests of the library in processes that are hard on it.

if(NOT QRV_SANITIZE)
  # The sanitizers' own frames need more stack than is given here.
  add_test(NAME Surroundings.StackOf256Kilobytes COMMAND sh -c [[ulimit -s 256 && exec "$0" --gtest_brief=1]] $<TARGET_FILE:qrv_tests>)

  # The C library's locale of decimal commas is made here, so that it need not be set up for the whole machine. Numbers
  # are written and read alike under the sanitizers.
  set(locales ${CMAKE_CURRENT_BINARY_DIR}/locales)
  add_test(NAME Surroundings.MakesALocaleOfDecimalCommas
           COMMAND sh -c [[mkdir -p "$0" && localedef -i de_DE -f UTF-8 "$0/de_DE.UTF-8"]] ${locales})
  set_tests_properties(Surroundings.MakesALocaleOfDecimalCommas PROPERTIES FIXTURES_SETUP comma_locale)
  add_test(NAME Surroundings.DecimalCommas COMMAND qrv_tests --gtest_brief=1)
  set_tests_properties(Surroundings.DecimalCommas PROPERTIES FIXTURES_REQUIRED comma_locale
                       ENVIRONMENT "LOCPATH=${locales};QRV_TEST_COMMA_LOCALE=1")
endif()

add_library(qrv_loaded_module MODULE surroundings/LoadedModule.cpp)
target_link_libraries(qrv_loaded_module PRIVATE QRV::QRV)
add_executable(qrv_load_and_unload surroundings/LoadAndUnload.cpp)
target_link_libraries(qrv_load_and_unload PRIVATE ${CMAKE_DL_LIBS})
foreach(target qrv_loaded_module qrv_load_and_unload)
  qrv_compile_options(${target})
  qrv_link_options(${target})
endforeach()
# Out of a process that checks addresses a library is never taken.
if(NOT QRV_SANITIZE)
  add_test(NAME Surroundings.LoadsAndUnloads
           COMMAND qrv_load_and_unload $<TARGET_FILE:qrv_loaded_module> $<TARGET_SONAME_FILE_NAME:QRV>)
endif()
