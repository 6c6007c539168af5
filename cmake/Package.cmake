# `cpack` in a build folder makes one .deb: library, header, tool, parameter files and the manual page. What they need of
# the system's packages is read off the binaries.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vkrhdr)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR libVKRExposureFusion)
set(CPACK_PACKAGE_CONTACT "The libVKRExposureFusion engineers")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
    "A library with a C interface, and the program vkrhdr for anybody with a bracket of photos.")
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/packages)
include(CPack)
