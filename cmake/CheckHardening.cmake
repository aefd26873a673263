# cmake -DREADELF=… -DOBJDUMP=… -DPROCESSOR=… -P CheckHardening.cmake -- FILE...
# Reads in every program and library that is named what TamberHardening.cmake asks for, and fails where it is not so.

function(require file text what)
  foreach(pattern IN LISTS ARGN)
    if(NOT text MATCHES "${pattern}")
      message(SEND_ERROR "${file}: ${what} (nothing matches '${pattern}')")
    endif()
  endforeach()
endfunction()

function(check_elf file)
  execute_process(COMMAND "${READELF}" -hldW "${file}" OUTPUT_VARIABLE text COMMAND_ERROR_IS_FATAL ANY)
  require("${file}" "${text}" "not position-independent" "Type: +DYN")
  require("${file}" "${text}" "its tables stay writable" "GNU_RELRO" "\\(FLAGS_1\\)[^\n]*NOW")
  require("${file}" "${text}" "its stack is executable" "GNU_STACK +0x[^\n]* RW +0x")
  # The mark of a whole file for control-flow enforcement depends on the system's start-up objects as well.
  if(PROCESSOR MATCHES "x86_64|AMD64|i.86" AND text MATCHES "Position-Independent Executable")
    execute_process(COMMAND "${OBJDUMP}" -d --disassemble=main "${file}" OUTPUT_VARIABLE code
                    COMMAND_ERROR_IS_FATAL ANY)
    require("${file}" "${code}" "its functions are not marked for indirect calls" "<main>:\n[^\n]*endbr")
  endif()
endfunction()

function(check_pe file)
  execute_process(COMMAND "${OBJDUMP}" -p "${file}" OUTPUT_VARIABLE text COMMAND_ERROR_IS_FATAL ANY)
  require("${file}" "${text}" "not placed at random" "DYNAMIC_BASE" "Base Relocation Directory")
  require("${file}" "${text}" "its data is executable" "NX_COMPAT")
  if(text MATCHES "pei-x86-64")
    require("${file}" "${text}" "not placed in the whole address space" "HIGH_ENTROPY_VA")
  endif()
endfunction()

math(EXPR last "${CMAKE_ARGC} - 1")
set(reached FALSE)
foreach(i RANGE ${last})
  if(reached AND CMAKE_ARGV${i} MATCHES "\\.(exe|dll)$")
    check_pe("${CMAKE_ARGV${i}}")
  elseif(reached)
    check_elf("${CMAKE_ARGV${i}}")
  elseif(CMAKE_ARGV${i} STREQUAL "--")
    set(reached TRUE)
  endif()
endforeach()
