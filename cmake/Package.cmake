# `cpack` in a build folder makes three Debian packages: the library, what is needed to build against it, and the program
# with its parameter files and manual page. What they need of the system's packages is read off the binaries.
set(VKRHDR_MAINTAINER "The libVKRExposureFusion engineers <engineers@vkrhdr.example.org>" CACHE STRING
    "Who answers for the packages, with an address")
set(runtime_package libvkrexposurefusion${PROJECT_VERSION_MAJOR})
set(dev_package libvkrexposurefusion-dev)
set(tool_package vkrhdr)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vkrhdr)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR libVKRExposureFusion)
set(CPACK_PACKAGE_CONTACT "${VKRHDR_MAINTAINER}")
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/packages)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL runtime dev)
if(VKRHDR_BUILD_TOOL)
  list(APPEND CPACK_COMPONENTS_ALL tool)
endif()

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_COMPONENT_DEV_DEPENDS runtime)
set(CPACK_COMPONENT_TOOL_DEPENDS runtime)  # for TensorFlow Lite in the library's private folder
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${runtime_package})
set(CPACK_DEBIAN_DEV_PACKAGE_NAME ${dev_package})
set(CPACK_DEBIAN_TOOL_PACKAGE_NAME ${tool_package})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION graphics)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION
    "The library. One picture with the detail of all is made of up to eight
differently exposed 4:2:0 frames, in fixed-point arithmetic. Hand-held frames
are aligned, and what moved between them appears once.")
set(CPACK_COMPONENT_DEV_DESCRIPTION
    "What is needed to build against the library: its C header, its link, and the
files by which CMake and pkg-config find it.")
set(CPACK_COMPONENT_TOOL_DESCRIPTION
    "The program, for anybody with a bracket of photos: it makes one picture of
differently exposed JPEG or PNG files of one scene, aligns them, and shows what
it decided.")

# The control files that CPack does not make as Debian wants them.
set(control ${CMAKE_CURRENT_BINARY_DIR}/debian)
set(soname_dependency "libVKRExposureFusion ${PROJECT_VERSION_MAJOR} ${runtime_package} (>= ${PROJECT_VERSION})")
file(CONFIGURE OUTPUT ${control}/shlibs CONTENT "@soname_dependency@\n" @ONLY)
file(CONFIGURE OUTPUT ${control}/triggers CONTENT "activate-noawait ldconfig\n" @ONLY)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${control}/shlibs ${control}/triggers)

# Every package has its changelog and the licences of what is in it or linked to it.
file(GLOB copyright_notes CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/debian/*)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${copyright_notes})
foreach(component runtime dev tool)
  set(package ${${component}_package})
  configure_file(cmake/debian/changelog.in ${control}/${package}/changelog.Debian @ONLY)
  execute_process(COMMAND gzip -9nkf ${control}/${package}/changelog.Debian COMMAND_ERROR_IS_FATAL ANY)
  configure_file(cmake/debian/copyright.in ${control}/${package}/copyright @ONLY)
  install(FILES ${control}/${package}/changelog.Debian.gz ${control}/${package}/copyright
          DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package} COMPONENT ${component})
endforeach()
include(CPack)
