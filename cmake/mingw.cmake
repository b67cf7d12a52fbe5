# Cross build for Windows with MinGW-w64 (posix thread model, so that
# std::thread and GoogleTest build). Test executables run under Wine.
#
# VELMORA_ARCH is i686, the product, or x86_64: its twin for machines that
# cannot run 32-bit x86 code (some virtual machines run 64-bit user code
# only), so that the tests can still run there under 64-bit Wine.
if(NOT VELMORA_ARCH)
  set(VELMORA_ARCH i686)
endif()
# The compiler checks' own projects read this file again and need it too.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES VELMORA_ARCH)

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR ${VELMORA_ARCH})

set(CMAKE_C_COMPILER   ${VELMORA_ARCH}-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER ${VELMORA_ARCH}-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER  ${VELMORA_ARCH}-w64-mingw32-windres)

set(CMAKE_FIND_ROOT_PATH /usr/${VELMORA_ARCH}-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)

find_program(WINE_EXECUTABLE wine REQUIRED)
set(CMAKE_CROSSCOMPILING_EMULATOR ${WINE_EXECUTABLE})
