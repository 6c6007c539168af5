include(CMakePackageConfigHelpers)

# Three parts, installed together by `cmake --install` and one package each by cpack: runtime is the library, dev what is
# needed to build against it, tool the program.
install(TARGETS VKRExposureFusion EXPORT vkrhdr-targets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT dev)

# TensorFlow Lite lies in a folder of our own beside the library, so that it meets no other program's. Library and tool
# find it by one path in the build tree and where they are installed: a path of the build tree that is rewritten is
# padded with empty ones, which mean the working directory.
if(VKRHDR_WITH_TFLITE)
  install(FILES $<TARGET_FILE:tflite> DESTINATION ${CMAKE_INSTALL_LIBDIR}/vkrhdr COMPONENT runtime)
  set_target_properties(VKRExposureFusion PROPERTIES INSTALL_RPATH $ORIGIN/vkrhdr BUILD_WITH_INSTALL_RPATH ON)
  if(VKRHDR_BUILD_TOOL)
    file(RELATIVE_PATH bin_to_lib ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
    set_target_properties(vkrhdr PROPERTIES
                          INSTALL_RPATH $ORIGIN/${bin_to_lib}/vkrhdr BUILD_WITH_INSTALL_RPATH ON)
    cmake_path(ABSOLUTE_PATH bin_to_lib BASE_DIRECTORY ${CMAKE_BINARY_DIR}/tools NORMALIZE OUTPUT_VARIABLE tool_to_lib)
    file(MAKE_DIRECTORY ${tool_to_lib})
    file(CREATE_LINK ${CMAKE_BINARY_DIR}/vkrhdr ${tool_to_lib}/vkrhdr SYMBOLIC)
  endif()
endif()
install(FILES include/vkrHdr.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT dev)

set(cmake_folder ${CMAKE_INSTALL_LIBDIR}/cmake/vkrhdr)
install(EXPORT vkrhdr-targets NAMESPACE vkrhdr:: DESTINATION ${cmake_folder} COMPONENT dev)
configure_package_config_file(cmake/vkrhdr-config.cmake.in ${CMAKE_CURRENT_BINARY_DIR}/vkrhdr-config.cmake
                              INSTALL_DESTINATION ${cmake_folder})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/vkrhdr-config-version.cmake
                                 COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/vkrhdr-config.cmake ${CMAKE_CURRENT_BINARY_DIR}/vkrhdr-config-version.cmake
        DESTINATION ${cmake_folder} COMPONENT dev)

file(RELATIVE_PATH pc_to_prefix ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
configure_file(cmake/vkrhdr.pc.in ${CMAKE_CURRENT_BINARY_DIR}/vkrhdr.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/vkrhdr.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT dev)

if(VKRHDR_BUILD_TOOL)
  install(TARGETS vkrhdr RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tool)
  install(FILES params/default.txt params/photo.txt DESTINATION ${CMAKE_INSTALL_DATADIR}/vkrhdr COMPONENT tool)
  # Whoever made the face model gets it installed for the tool.
  install(FILES models/faceDetect_rgb_320x240.tflite DESTINATION ${CMAKE_INSTALL_DATADIR}/vkrhdr/models
          COMPONENT tool OPTIONAL)
  configure_file(docs/vkrhdr.1 ${CMAKE_CURRENT_BINARY_DIR}/vkrhdr.1 COPYONLY)  # compressed again when it changes
  execute_process(COMMAND gzip -9nkf ${CMAKE_CURRENT_BINARY_DIR}/vkrhdr.1 COMMAND_ERROR_IS_FATAL ANY)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/vkrhdr.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tool)
endif()
