# The face network's runtime: TensorFlow Lite's C library, as tools/scripts/fetch_tflite leaves it. It is copied into a
# folder of its own beside our library, so that both the build tree and the installed one find it by a path relative to
# the library.
set(VKRHDR_TFLITE_DIR ${CMAKE_CURRENT_SOURCE_DIR}/.deps/tflite CACHE PATH "What tools/scripts/fetch_tflite fetched")

if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64)$")
  set(tflite_library ${VKRHDR_TFLITE_DIR}/linux_amd64/libtensorflowlite_c.so)
elseif(CMAKE_SYSTEM_PROCESSOR MATCHES "^(aarch64|arm64)$")
  set(tflite_library ${VKRHDR_TFLITE_DIR}/linux_arm64/libtensorflowlite_c.so)
endif()
if(NOT tflite_library OR NOT EXISTS ${tflite_library})
  if(NOT VKRHDR_WITH_TFLITE STREQUAL AUTO)
    message(FATAL_ERROR "No TensorFlow Lite for ${CMAKE_SYSTEM_PROCESSOR}: run tools/scripts/fetch_tflite")
  endif()
  message(WARNING "No TensorFlow Lite for ${CMAKE_SYSTEM_PROCESSOR}: built without, faces are not searched")
  set(VKRHDR_WITH_TFLITE OFF)
  return()
endif()
set(VKRHDR_WITH_TFLITE ON)

file(COPY ${tflite_library} DESTINATION ${CMAKE_CURRENT_BINARY_DIR}/vkrhdr)
add_library(tflite SHARED IMPORTED)
set_target_properties(tflite PROPERTIES
                      IMPORTED_LOCATION ${CMAKE_CURRENT_BINARY_DIR}/vkrhdr/libtensorflowlite_c.so
                      IMPORTED_SONAME libtensorflowlite_c.so
                      INTERFACE_INCLUDE_DIRECTORIES ${VKRHDR_TFLITE_DIR}/include)
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)
