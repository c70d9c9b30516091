# The program has every protection that it was built for. Each row: what to look for, and what it is missing without.
function(told OUTPUT)
  execute_process(COMMAND ${ARGN} OUTPUT_VARIABLE text COMMAND_ERROR_IS_FATAL ANY)
  set(${OUTPUT} "${text}" PARENT_SCOPE)
endfunction()

if(READELF)
  told(headers ${READELF} -hlWd ${FILE})
  told(symbols ${READELF} -sWd --dyn-syms ${FILE})
  set(all "${headers}${symbols}")
  if(headers MATCHES "Machine: +Advanced Micro Devices X86-64")
    told(code ${DISASSEMBLER} -d --no-show-raw-insn --disassemble=main ${FILE})
    string(APPEND all "${code}")
    set(rows "<main>:[ \t\n]+[0-9a-f]+:[ \t]+endbr64" "marked targets of branches")
  endif()
  list(APPEND rows
    "Type: +DYN" "an address that changes (PIE)"
    "GNU_RELRO" "tables that are read-only (RELRO)"
    "Flags: NOW|BIND_NOW" "names bound at the start (-z now)"
    "GNU_STACK +0x0+ 0x0+ 0x0+ 0x0+ 0x0+ RW " "a stack that is not executable"
    "__stack_chk_fail" "canaries"
    "__[a-z]+_chk[@ ]" "checked calls of the C library"
    "__glibcxx_assert_fail" "checked bounds")
else()
  told(headers ${OBJDUMP} -p ${FILE})
  told(symbols ${NM} ${FILE})
  set(all "${headers}${symbols}")
  set(rows
    "DYNAMIC_BASE" "an address that changes"
    "NX_COMPAT" "data that is not executable"
    "__stack_chk_fail" "canaries"
    "__glibcxx_assert_fail" "checked bounds")
  if(WIDTH EQUAL 8)
    list(APPEND rows "HIGH_ENTROPY_VA" "an address from a wide range")
  endif()
endif()

set(missing)
while(rows)
  list(POP_FRONT rows pattern protection)
  if(NOT all MATCHES "${pattern}")
    list(APPEND missing "${protection}")
  endif()
endwhile()
if(missing)
  list(JOIN missing ", " missing)
  message(FATAL_ERROR "${FILE} lacks: ${missing}")
endif()
