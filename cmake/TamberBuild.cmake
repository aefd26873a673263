# What holds for every target: language, output folders, flags, compiler cache.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_UNITY_BUILD_BATCH_SIZE 8) # names that sources keep to themselves are known to differ within so many
if(NOT PROJECT_IS_TOP_LEVEL)
  set(CMAKE_UNITY_BUILD OFF)
endif()
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

get_property(multi_config GLOBAL PROPERTY GENERATOR_IS_MULTI_CONFIG)
if(PROJECT_IS_TOP_LEVEL AND NOT multi_config AND NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "Kind of build" FORCE)
endif()

# Plug-ins are looked for beside the running program, so everything that loads goes into one folder.
foreach(kind RUNTIME LIBRARY)
  if(NOT DEFINED CMAKE_${kind}_OUTPUT_DIRECTORY)
    set(CMAKE_${kind}_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
  endif()
endforeach()
if(NOT DEFINED CMAKE_ARCHIVE_OUTPUT_DIRECTORY)
  set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")
endif()
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)
if(NOT DEFINED CMAKE_INSTALL_RPATH AND NOT WIN32)
  set(CMAKE_INSTALL_RPATH "$ORIGIN;$ORIGIN/../lib;$ORIGIN/..")
endif()

find_package(Threads REQUIRED)
include(TamberHardening)

# Without unique symbols a module that was opened at run time is really gone after it was closed.
include(CheckCXXCompilerFlag)
if(NOT WIN32)
  check_cxx_compiler_flag(-fno-gnu-unique TAMBER_HAS_NO_GNU_UNIQUE)
  if(TAMBER_HAS_NO_GNU_UNIQUE)
    add_compile_options(-fno-gnu-unique)
  endif()
endif()

if(TAMBER_SANITIZE)
  add_compile_options(-fsanitize=${TAMBER_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${TAMBER_SANITIZE})
endif()
if(TAMBER_COVERAGE)
  add_compile_options(--coverage -fprofile-update=atomic)
  add_link_options(--coverage)
endif()

# Paths relative to the source folder let clones at other places share what is cached. The compiler itself names the
# headers that count: to preprocess everything first would take an eighth of the time.
if(PROJECT_IS_TOP_LEVEL AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  find_program(TAMBER_CCACHE ccache)
  if(TAMBER_CCACHE)
    # Headers that were just checked out are cached as well.
    set(sloppiness time_macros,include_file_mtime,include_file_ctime)
    set(CMAKE_CXX_COMPILER_LAUNCHER "${CMAKE_COMMAND}" -E env "CCACHE_BASEDIR=${PROJECT_SOURCE_DIR}"
                                    CCACHE_NOHASHDIR=1 CCACHE_DEPEND=1
                                    "CCACHE_SLOPPINESS=${sloppiness}" "${TAMBER_CCACHE}")
  endif()
endif()

add_library(tamber_warnings INTERFACE)
target_compile_options(tamber_warnings INTERFACE -Wall -Wextra -Wshadow -Wconversion)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # Version 12 raises it for every "text" + std::string.
  target_compile_options(tamber_warnings INTERFACE -Wno-restrict)
endif()
if(CMAKE_UNITY_BUILD AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # Sources that are included together have unnamed namespaces all the same.
  target_compile_options(tamber_warnings INTERFACE -Wno-subobject-linkage)
endif()
if(TAMBER_WARNINGS_AS_ERRORS)
  target_compile_options(tamber_warnings INTERFACE -Werror)
endif()

# Programs of a Windows build find the compiler's run-time libraries beside them.
if(MINGW)
  foreach(library libstdc++-6.dll libgcc_s_seh-1.dll libgcc_s_dw2-1.dll libgcc_s_sjlj-1.dll libwinpthread-1.dll)
    execute_process(COMMAND "${CMAKE_CXX_COMPILER}" -print-file-name=${library}
                    OUTPUT_VARIABLE found OUTPUT_STRIP_TRAILING_WHITESPACE)
    if(IS_ABSOLUTE "${found}" AND EXISTS "${found}")
      configure_file("${found}" "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${library}" COPYONLY)
    endif()
  endforeach()
endif()
