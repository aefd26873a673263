# 32-bit programs on 64-bit Linux. SSE arithmetic, so that floats round as they do at 64 bits.
set(CMAKE_C_COMPILER gcc)
set(CMAKE_CXX_COMPILER g++)
set(CMAKE_CXX_FLAGS_INIT "-m32 -msse2 -mfpmath=sse")
set(CMAKE_C_FLAGS_INIT "-m32 -msse2 -mfpmath=sse")
# Libraries and packages of this machine are 64 bits wide.
set(CMAKE_IGNORE_PATH /usr/lib/x86_64-linux-gnu /usr/lib/x86_64-linux-gnu/cmake)
