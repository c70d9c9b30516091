# The DLL has its five entry points, undecorated, and needs nothing but what Windows has.
execute_process(COMMAND ${OBJDUMP} -p ${FILE} OUTPUT_VARIABLE told COMMAND_ERROR_IS_FATAL ANY)

string(REGEX MATCHALL "\n\t\\[ *[0-9]+\\] [^\n]+" exports "${told}")
list(TRANSFORM exports REPLACE ".*\\] " "")
list(FILTER exports INCLUDE REGEX "^[A-Za-z_@0-9]+$")
set(wanted DllCanUnloadNow DllGetClassObject DllInstall DllRegisterServer DllUnregisterServer)
if(NOT exports STREQUAL wanted)
  message(FATAL_ERROR "Exports are ${exports}")
endif()

string(REGEX MATCHALL "DLL Name: [^\n]+" imports "${told}")
list(TRANSFORM imports REPLACE "DLL Name: " "")
list(TRANSFORM imports TOLOWER)
set(system advapi32.dll comctl32.dll comdlg32.dll gdi32.dll kernel32.dll msvcrt.dll ole32.dll oleacc.dll
  oleaut32.dll shell32.dll shlwapi.dll user32.dll uxtheme.dll)
list(REMOVE_ITEM imports ${system})
if(imports)
  message(FATAL_ERROR "It needs ${imports}")
endif()
