# 64-bit Windows from Linux with MinGW-w64; programs run under Wine. The posix thread model is the one whose C++
# runtime is complete.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Debian keeps Wine's loader out of the path.
find_program(TABRIN_WINE NAMES wine64 HINTS /usr/lib/wine DOC "Runs 64-bit Windows programs")
if(TABRIN_WINE)
    set(CMAKE_CROSSCOMPILING_EMULATOR "${TABRIN_WINE}")
endif()
