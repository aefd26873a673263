# Headers of other libraries that are compiled once for many sources, where TAMBER_PCH is on. The kernel goes without
# them; in the presets debug and release everything does, so that what a source forgets to include is found there.

# tamber_precompile(<program> <name> LIBRARIES library... HEADERS <header>...): the program's sources find the headers
# compiled. Programs of one folder, or of folders below it, that give the same name share them.
function(tamber_precompile program name)
  cmake_parse_arguments(PARSE_ARGV 2 arg "" "" "LIBRARIES;HEADERS")
  if(NOT TAMBER_PCH)
    return()
  endif()
  if(NOT TARGET ${name})
    set(source "${PROJECT_BINARY_DIR}/precompiled/${name}.cpp")
    file(CONFIGURE OUTPUT "${source}" CONTENT "")
    add_library(${name} OBJECT "${source}")
    target_link_libraries(${name} PRIVATE ${arg_LIBRARIES} tamber_warnings)
    # They serve only what is compiled in the same way, as programs are.
    set_target_properties(${name} PROPERTIES POSITION_INDEPENDENT_CODE OFF)
    target_compile_options(${name} PRIVATE ${CMAKE_CXX_COMPILE_OPTIONS_PIE})
    target_precompile_headers(${name} PRIVATE ${arg_HEADERS})
  endif()
  target_precompile_headers(${program} REUSE_FROM ${name})
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(${program} PRIVATE -fpch-preprocess) # for the compiler cache
  endif()
endfunction()
