# Cross-building for Windows with Debian's mingw-w64. TRACELYN_WINDOWS_DEPS is the folder in which
# dependencies.sh has installed the static libraries.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
# try_compile reads this file again, without the command line's variables.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES TRACELYN_WINDOWS_DEPS)

set(CMAKE_FIND_ROOT_PATH ${TRACELYN_WINDOWS_DEPS} /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(QT_HOST_PATH /usr CACHE PATH "")
set(QT_HOST_PATH_CMAKE_DIR /usr/lib/x86_64-linux-gnu/cmake CACHE PATH "")

# The compiler's own libraries go into the programs too. zlib is named in full: the import library of its DLL
# would be found first.
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)
set(ZLIB_LIBRARY /usr/x86_64-w64-mingw32/lib/libz.a CACHE FILEPATH "")
