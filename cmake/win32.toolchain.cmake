# Windows, 32 bits, by MinGW-w64 with POSIX threads. Programs run where a 32-bit Wine is present. SSE arithmetic, so
# that floats round as they do at 64 bits; Windows aligns the stacks of its threads to 4 bytes only.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_C_COMPILER i686-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER i686-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER i686-w64-mingw32-windres)
set(CMAKE_CXX_FLAGS_INIT "-msse2 -mfpmath=sse -mstackrealign")
set(CMAKE_C_FLAGS_INIT "-msse2 -mfpmath=sse -mstackrealign")
set(CMAKE_FIND_ROOT_PATH /usr/i686-w64-mingw32)
include("${CMAKE_CURRENT_LIST_DIR}/windows.cmake")
tamber_find_wine(/usr/lib/wine/wine /usr/lib/i386-linux-gnu/wine/wine)
