# Compiler settings that every target of the project shares.

find_program(QRV_CCACHE ccache)
if(QRV_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${QRV_CCACHE})
endif()

# Symbols that are unique in the whole process would keep the library in it for ever.
include(CheckCXXCompilerFlag)
check_cxx_compiler_flag(-fno-gnu-unique QRV_HAS_GNU_UNIQUE)

function(qrv_compile_options target)
  # Contracted multiply-adds would make results differ between compilers.
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow $<$<BOOL:${QRV_WERROR}>:-Werror> -ffp-contract=off
                         $<$<BOOL:${QRV_HAS_GNU_UNIQUE}>:-fno-gnu-unique>)
  if(QRV_SANITIZE)
    target_compile_options(${target} PRIVATE -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer
                           -D_GLIBCXX_ASSERTIONS)
  endif()
  if(QRV_FUZZ)
    target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
  endif()
endfunction()

function(qrv_link_options target)
  if(QRV_SANITIZE)
    target_link_options(${target} PRIVATE -fsanitize=address,undefined)
  else()
    target_link_options(${target} PRIVATE -Wl,--no-undefined)
  endif()
endfunction()

# Instantiations of the standard library's templates are visible whatever the compiler is told; the map keeps them in.
function(qrv_export_only target map)
  target_link_options(${target} PRIVATE -Wl,--version-script=${map})
  set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${map})
endfunction()
