# What `cmake --install` lays down: the library, its headers, and how CMake and pkg-config find both. The tree may be
# moved as a whole.

include(CMakePackageConfigHelpers)

install(TARGETS QRV EXPORT QRVTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(FILES ${QRV_PUBLIC_HEADERS} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/QRV)

set(QRV_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/QRV)
install(EXPORT QRVTargets NAMESPACE QRV:: DESTINATION ${QRV_PACKAGE_DIR})
configure_package_config_file(cmake/QRVConfig.cmake.in QRVConfig.cmake INSTALL_DESTINATION ${QRV_PACKAGE_DIR})
write_basic_package_version_file(QRVConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/QRVConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/QRVConfigVersion.cmake
        DESTINATION ${QRV_PACKAGE_DIR})

file(RELATIVE_PATH QRV_PREFIX_FROM_PC ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
configure_file(cmake/qrv.pc.in qrv.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/qrv.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
