# What compiler and linker add so that a fault is harder to turn into control of the process. Builds with sanitizers
# or for coverage go without: they are not for use, and bring checks of their own.

include(CheckCXXCompilerFlag)
include(CheckLinkerFlag)
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX) # programs are linked as position-independent, not only compiled so

# The library's own checks of indices, iterators and empty containers.
add_compile_options($<$<CONFIG:Debug>:-D_GLIBCXX_ASSERTIONS>)

if(TAMBER_SANITIZE OR TAMBER_COVERAGE)
  return()
endif()

# tamber_harden_link(<name> <option>): for everything that is linked, where the linker knows the option.
function(tamber_harden_link name option)
  check_linker_flag(CXX "LINKER:${option}" TAMBER_LINKS_${name})
  if(TAMBER_LINKS_${name})
    add_link_options("LINKER:${option}")
  endif()
endfunction()

if(WIN32)
  tamber_harden_link(DYNAMIC_BASE --dynamicbase)
  tamber_harden_link(NX --nxcompat)
  if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    tamber_harden_link(HIGH_ENTROPY --high-entropy-va)
  endif()
else()
  # Functions begin with a mark for indirect calls, and returns are checked, where the processor does so.
  check_cxx_compiler_flag(-fcf-protection=full TAMBER_HAS_CF_PROTECTION)
  if(TAMBER_HAS_CF_PROTECTION)
    add_compile_options(-fcf-protection=full)
  endif()
  # Tables of addresses are filled in at start and read-only from then on.
  tamber_harden_link(RELRO -z,relro)
  tamber_harden_link(NOW -z,now)
  tamber_harden_link(NO_EXEC_STACK -z,noexecstack)
endif()
