# What both Windows toolchains share.
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# tamber_find_wine(<program>...): the first of the programs that exists runs what is built.
macro(tamber_find_wine)
  set(TAMBER_NO_EMULATOR "no Wine for programs of ${CMAKE_SYSTEM_PROCESSOR} was found")
  find_program(TAMBER_WINE NAMES ${ARGN} NO_CMAKE_FIND_ROOT_PATH)
  if(TAMBER_WINE)
    set(CMAKE_CROSSCOMPILING_EMULATOR "${CMAKE_CURRENT_LIST_DIR}/run-in-wine.sh;${TAMBER_WINE};${CMAKE_BINARY_DIR}/wine")
  endif()
endmacro()
