# The 64-bit twin of the i686 cross build: the same sources for x86_64
# Windows. Used only where the machine cannot run 32-bit x86 code (some
# virtual machines run 64-bit user code only), so that the tests can still
# run under 64-bit Wine; the product itself is the i686 build.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(CMAKE_C_COMPILER   x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER  x86_64-w64-mingw32-windres)

set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)

find_program(WINE_EXECUTABLE wine REQUIRED)
set(CMAKE_CROSSCOMPILING_EMULATOR ${WINE_EXECUTABLE})
