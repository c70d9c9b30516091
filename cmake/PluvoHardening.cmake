# Makes a fault in a program hard to exploit, for every target and preset. The stack has canaries, and its pages are
# touched one by one. Containers check bounds, and calls of the C library are checked. Branches lead to marked places
# only. Tables cannot be written after linking, and addresses change with every start. tests/hardening looks for each of
# these in the programs.
include(CheckCXXCompilerFlag)

# Libraries for Windows find the canary's run-time library by the same option.
add_compile_options(-fstack-protector-strong)
add_link_options(-fstack-protector-strong)
add_compile_definitions(_GLIBCXX_ASSERTIONS)

# The checked calls need the optimiser, and hide from the sanitizers what those would see.
string(TOUPPER "${CMAKE_BUILD_TYPE}" configuration)
if(NOT PLUVO_SANITIZE AND "${CMAKE_CXX_FLAGS} ${CMAKE_CXX_FLAGS_${configuration}}" MATCHES "-O[1-9sg]")
  add_compile_options(-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3)
endif()

if(WIN32)
  add_link_options(-Wl,--dynamicbase -Wl,--nxcompat)
  if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    add_link_options(-Wl,--high-entropy-va)
  endif()
  return()
endif()

add_link_options(-Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
foreach(option stack-clash-protection cf-protection)
  string(MAKE_C_IDENTIFIER PLUVO_HAS_${option} known)
  check_cxx_compiler_flag(-f${option} ${known})
  if(${known})
    add_compile_options(-f${option})
  endif()
endforeach()
