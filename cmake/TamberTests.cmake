# GoogleTest, and how test programs are run. There is no target gtest where GoogleTest was not found.

if(EXISTS /usr/src/googletest/googletest/CMakeLists.txt)
  set(gtest_disable_pthreads OFF)
  set(BUILD_SHARED_LIBS OFF)
  set(CMAKE_POLICY_DEFAULT_CMP0077 NEW)
  add_subdirectory(/usr/src/googletest/googletest "${PROJECT_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL)
else()
  find_package(GTest QUIET)
  if(NOT GTest_FOUND)
    return()
  endif()
  add_library(gtest ALIAS GTest::gtest)
endif()

# Programs of another system run in an emulator or not at all.
set(TAMBER_RUN_TESTS ON)
if(CMAKE_CROSSCOMPILING AND NOT CMAKE_CROSSCOMPILING_EMULATOR)
  set(TAMBER_RUN_TESTS OFF)
  message(STATUS "tests: built and not run, ${TAMBER_NO_EMULATOR}")
endif()

# tamber_drop_tests_without_module(<list>): takes the sources out that test a module which is not built. Their paths
# name the module, or they include headers of its folder.
function(tamber_drop_tests_without_module list)
  foreach(module tbPortableKernel=portable/ tbNull=plugins/null/ tbAssimpLoader=plugins/assimp/)
    string(REGEX MATCH "^(.+)=(.+)$" match ${module})
    if(TARGET ${CMAKE_MATCH_1})
      continue()
    endif()
    set(folder ${CMAKE_MATCH_2})
    string(REPLACE plugins/ "" name ${folder})
    string(REPLACE / "" name ${name})
    foreach(source IN LISTS ${list})
      file(STRINGS "${source}" uses REGEX "#include <${folder}")
      string(TOLOWER "${source}" path)
      if(uses OR path MATCHES "/tests/.*${name}")
        list(REMOVE_ITEM ${list} "${source}")
      endif()
    endforeach()
  endforeach()
  set(${list} "${${list}}" PARENT_SCOPE)
endfunction()

# What keeps a test off the user's settings and from running for ever.
set(TAMBER_TEST_PROPERTIES TIMEOUT 300 ENVIRONMENT TAMBER_SETTINGS=settings.ini)

# tamber_test_folder(<folder> <name>): a folder of its own for a test to work in.
function(tamber_test_folder folder name)
  set(path "${PROJECT_BINARY_DIR}/tests/${name}")
  file(MAKE_DIRECTORY "${path}")
  set(${folder} "${path}" PARENT_SCOPE)
endfunction()

# tamber_add_test(<target> [NAME name] [ARGS ...]): runs a program, which ends with 0. Such programs begin before the
# cases: some take much longer than any case, and would otherwise be waited for at the end.
function(tamber_add_test target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "NAME" "ARGS")
  if(NOT arg_NAME)
    set(arg_NAME ${target})
  endif()
  if(TAMBER_RUN_TESTS)
    tamber_test_folder(folder ${arg_NAME})
    add_test(NAME ${arg_NAME} COMMAND ${target} ${arg_ARGS} WORKING_DIRECTORY "${folder}")
    set_tests_properties(${arg_NAME} PROPERTIES ${TAMBER_TEST_PROPERTIES} COST 100)
  endif()
endfunction()

# tamber_add_cases(<target>): runs every case of a GoogleTest program in a process of its own, so that none sees the
# classes, plug-ins and threads of another.
function(tamber_add_cases target)
  if(TAMBER_RUN_TESTS)
    tamber_test_folder(folder ${target})
    gtest_discover_tests(${target} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 120 NO_PRETTY_VALUES
                         WORKING_DIRECTORY "${folder}" PROPERTIES ${TAMBER_TEST_PROPERTIES})
  endif()
endfunction()
