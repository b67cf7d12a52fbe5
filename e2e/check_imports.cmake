# Checks that EXE is a 32-bit (i386) Windows program (GUI, or console with
# SUBSYSTEM=console) whose imports are
# all DLLs that every Windows has. opengl32.dll is not one of them: the
# program loads it at run time so that it starts without it.
set(allowed
  kernel32.dll user32.dll gdi32.dll advapi32.dll comctl32.dll
  version.dll netapi32.dll shell32.dll comdlg32.dll msvcrt.dll)
execute_process(COMMAND ${OBJDUMP} -p ${EXE} OUTPUT_VARIABLE dump RESULT_VARIABLE rc)
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "objdump failed on ${EXE}")
endif()
if(NOT dump MATCHES "file format pei-i386")
  message(FATAL_ERROR "${EXE} is not a 32-bit (i386) PE file")
endif()
# SUBSYSTEM: gui (the default) or console.
if(SUBSYSTEM STREQUAL "console")
  if(NOT dump MATCHES "Subsystem[ \t]+00000003")
    message(FATAL_ERROR "${EXE} is not a console-subsystem program")
  endif()
elseif(NOT dump MATCHES "Subsystem[ \t]+00000002")
  message(FATAL_ERROR "${EXE} is not a GUI-subsystem program")
endif()
string(REGEX MATCHALL "DLL Name: [^\n]+" names "${dump}")
if(NOT names)
  message(FATAL_ERROR "no imports found in ${EXE}")
endif()
foreach(line IN LISTS names)
  string(REGEX REPLACE "DLL Name: " "" dll "${line}")
  string(STRIP "${dll}" dll)
  string(TOLOWER "${dll}" dll)
  if(dll STREQUAL "opengl32.dll")
    message(FATAL_ERROR "${EXE} imports opengl32.dll; OpenGL must be loaded at run time")
  endif()
  list(FIND allowed "${dll}" at)
  if(at EQUAL -1)
    message(FATAL_ERROR "${EXE} imports ${dll}, which is not a system DLL")
  endif()
  message(STATUS "imports ${dll}")
endforeach()
