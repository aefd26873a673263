# CLI11 is headers only, so those of this machine serve programs of every system. They are copied out of the system's
# include folder, which programs of another system must not search.
find_path(CLI11_SYSTEM_INCLUDE CLI/CLI.hpp PATHS /usr/include /usr/local/include NO_CMAKE_FIND_ROOT_PATH)
mark_as_advanced(CLI11_SYSTEM_INCLUDE)
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(CLI11 REQUIRED_VARS CLI11_SYSTEM_INCLUDE)
if(CLI11_FOUND AND NOT TARGET CLI11::CLI11)
  file(COPY "${CLI11_SYSTEM_INCLUDE}/CLI" DESTINATION "${PROJECT_BINARY_DIR}/include")
  add_library(CLI11::CLI11 INTERFACE IMPORTED)
  target_include_directories(CLI11::CLI11 INTERFACE "${PROJECT_BINARY_DIR}/include")
endif()
