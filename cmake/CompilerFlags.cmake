# One set of flags for everything of ours. The results are defined to the bit: no contraction of products and sums, no
# fast mathematics, whatever the build type.
set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release)
endif()

find_package(OpenMP REQUIRED COMPONENTS CXX)

add_library(vkr_flags INTERFACE)
target_link_libraries(vkr_flags INTERFACE OpenMP::OpenMP_CXX)
target_compile_options(vkr_flags INTERFACE
                       -ffp-contract=off -fno-fast-math -Wall -Wextra -Wshadow -Wundef -Wcast-qual -Wformat=2
                       $<$<CXX_COMPILER_ID:Clang>:-Wno-pass-failed>  # a loop that stays scalar is no fault
                       $<$<BOOL:${VKRHDR_WERROR}>:-Werror>)

# On 64-bit ARM the NEON form serves every core: vectors whose length only the machine knows can not be members.
if(CMAKE_SYSTEM_PROCESSOR MATCHES "aarch64|arm64")
  target_compile_definitions(vkr_flags INTERFACE
                             "HWY_DISABLED_TARGETS=(HWY_SVE|HWY_SVE2|HWY_SVE_256|HWY_SVE2_128)")
endif()

# A shared library with undefined symbols is refused, except under sanitizers, whose runtime comes with the program.
set(VKRHDR_NO_UNDEFINED -Wl,--no-undefined)
if(VKRHDR_SANITIZE)
  add_compile_options(-fsanitize=${VKRHDR_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${VKRHDR_SANITIZE})
  set(VKRHDR_NO_UNDEFINED "")
endif()

# Bytes of the pool's regions that nobody may touch are told to the address sanitizer.
if(VKRHDR_POOL_CHECK)
  if(NOT VKRHDR_SANITIZE MATCHES "address")
    message(FATAL_ERROR "VKRHDR_POOL_CHECK needs VKRHDR_SANITIZE=address")
  endif()
  target_compile_definitions(vkr_flags INTERFACE VKRHDR_POOL_CHECK)
endif()
