include(CMakePackageConfigHelpers)

install(TARGETS VKRExposureFusion EXPORT vkrhdr-targets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(FILES include/vkrHdr.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

install(EXPORT vkrhdr-targets NAMESPACE vkrhdr:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/vkrhdr)
configure_package_config_file(cmake/vkrhdr-config.cmake.in ${CMAKE_CURRENT_BINARY_DIR}/vkrhdr-config.cmake
                              INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/vkrhdr)
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/vkrhdr-config-version.cmake
                                 COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/vkrhdr-config.cmake ${CMAKE_CURRENT_BINARY_DIR}/vkrhdr-config-version.cmake
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/vkrhdr)

configure_file(cmake/vkrhdr.pc.in ${CMAKE_CURRENT_BINARY_DIR}/vkrhdr.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/vkrhdr.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

install(FILES params/default.txt params/photo.txt DESTINATION ${CMAKE_INSTALL_DATADIR}/vkrhdr)
if(VKRHDR_BUILD_TOOL)
  install(TARGETS vkrhdr RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  install(FILES docs/vkrhdr.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
endif()
