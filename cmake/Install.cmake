include(CMakePackageConfigHelpers)

install(TARGETS VKRExposureFusion EXPORT vkrhdr-targets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
# TensorFlow Lite lies beside the library that was built, and beside the one that is installed. Both trees take the same
# paths: a path of the build tree that is rewritten is padded with empty ones, which mean the working directory.
if(VKRHDR_WITH_TFLITE)
  install(IMPORTED_RUNTIME_ARTIFACTS tflite LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
  set_target_properties(VKRExposureFusion PROPERTIES INSTALL_RPATH $ORIGIN BUILD_WITH_INSTALL_RPATH ON)
  if(VKRHDR_BUILD_TOOL)
    file(RELATIVE_PATH bin_to_lib ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
    set_target_properties(vkrhdr PROPERTIES
                          INSTALL_RPATH "$ORIGIN/${bin_to_lib};$ORIGIN/.." BUILD_WITH_INSTALL_RPATH ON)
  endif()
endif()
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
  # Whoever made the face model gets it installed for the tool.
  install(FILES models/faceDetect_rgb_320x240.tflite DESTINATION ${CMAKE_INSTALL_DATADIR}/vkrhdr/models OPTIONAL)
  install(FILES docs/vkrhdr.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
endif()
