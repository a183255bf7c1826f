# CMake toolchain: builds programs for vexrt.dll with vexcc and runs them with vexrun.
#
#   cmake -S . -B build --toolchain /path/to/dist/cmake/vexrt-toolchain.cmake
#
# VEXRT_COMPILER (clang or gcc) chooses the compiler.
get_filename_component(VEXRT_ROOT "${CMAKE_CURRENT_LIST_DIR}/.." ABSOLUTE)

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86)
set(VEXRT_COMPILER clang CACHE STRING "clang or gcc")
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES VEXRT_COMPILER)

# The compiler is known; CMake's own probing would look for another platform's linker.
foreach(language C CXX)
  set(CMAKE_${language}_COMPILER ${VEXRT_ROOT}/bin/vexcc)
  set(CMAKE_${language}_COMPILER_ID_RUN TRUE)
  set(CMAKE_${language}_COMPILER_ID Vexrt)
  set(CMAKE_${language}_COMPILER_FORCED TRUE)
  set(CMAKE_${language}_FLAGS_INIT "--compiler=${VEXRT_COMPILER}")
  set(CMAKE_USER_MAKE_RULES_OVERRIDE_${language} ${CMAKE_CURRENT_LIST_DIR}/vexrt-rules.cmake)
endforeach()
set(CMAKE_CROSSCOMPILING_EMULATOR ${VEXRT_ROOT}/bin/vexrun)
set(CMAKE_FIND_ROOT_PATH ${VEXRT_ROOT})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
