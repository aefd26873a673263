# How the folders around the kernel become targets.

# Adds a subfolder that has a CMakeLists.txt.
function(tamber_add_folder folder)
  if(EXISTS "${CMAKE_CURRENT_SOURCE_DIR}/${folder}/CMakeLists.txt")
    add_subdirectory("${folder}")
  endif()
endfunction()

# Adds every subfolder of a folder that has a CMakeLists.txt.
function(tamber_add_folders folder)
  file(GLOB lists CONFIGURE_DEPENDS RELATIVE "${CMAKE_CURRENT_SOURCE_DIR}/${folder}"
       "${CMAKE_CURRENT_SOURCE_DIR}/${folder}/*/CMakeLists.txt")
  foreach(list IN LISTS lists)
    get_filename_component(name "${list}" DIRECTORY)
    add_subdirectory("${folder}/${name}")
  endforeach()
endfunction()

# Keeps a shared library's exports to what is marked.
function(tamber_limit_exports target)
  if(UNIX AND NOT APPLE)
    set(map "${tamber_SOURCE_DIR}/cmake/exports.map")
    target_link_options(${target} PRIVATE "LINKER:--version-script=${map}")
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS "${map}")
  endif()
endfunction()

# tamber_add_module(tbFooLoader SOURCES a.cpp b.cpp LIBRARIES foo::foo)
# A module that the kernel loads at run time and that programs can link as well. Its file has the target's name
# without "lib" before it. While its own sources are compiled, <target>_EXPORTS is defined.
function(tamber_add_module target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES")
  add_library(${target} SHARED ${arg_SOURCES})
  set_target_properties(${target} PROPERTIES PREFIX "")
  tamber_limit_exports(${target})
  target_include_directories(${target} PUBLIC "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>")
  target_link_libraries(${target} PUBLIC tbKernel PRIVATE tamber_warnings ${arg_LIBRARIES})
  set_property(GLOBAL APPEND PROPERTY TAMBER_MODULES ${target})
  install(TARGETS ${target} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
          LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/tamber ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
endfunction()

# What loads modules at run time is built after them.
function(tamber_loads_modules)
  get_property(modules GLOBAL PROPERTY TAMBER_MODULES)
  foreach(target IN LISTS ARGN)
    if(TARGET ${target} AND modules)
      add_dependencies(${target} ${modules})
    endif()
  endforeach()
endfunction()

# Says in one line why a part of the build is left out.
function(tamber_left_out part reason)
  message(STATUS "${part}: left out, ${reason}")
endfunction()
