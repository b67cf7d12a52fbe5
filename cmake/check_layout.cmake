cmake_policy(SET CMP0057 NEW)
# Checks which folders the product's sources include from (tests, whose
# files end in _test.cpp, may also use testsupport/). Run by ctest with
# -DROOT=<source tree>. The README's layout table says the same.
#  - only shell/, which builds the two programs, includes shell/;
#  - no product folder includes bench/, e2e/ or testsupport/;
#  - the device layer's state (gl/device_state.h) is gl/'s own;
#  - the pure files below (decisions and texts over plain data) include
#    no Windows header.
set(allowed_win32 win32)
set(allowed_gl win32 gl)
set(allowed_sysinfo win32 sysinfo)
set(allowed_report win32 gl sysinfo report)
set(allowed_tests win32 gl tests)
set(allowed_quadview win32 gl tests quadview)
set(allowed_pfbrowser win32 gl pfbrowser)
set(allowed_check win32 gl sysinfo report tests quadview check)
set(allowed_shell win32 gl sysinfo report tests quadview pfbrowser check shell res)

set(pure
  win32/text.h gl/pixelformat_rules.h
  report/report.h report/report.cpp report/log.h report/log.cpp
  tests/catalogue.h tests/catalogue.cpp tests/scene_math.h tests/scene_math.cpp
  quadview/layout.h quadview/results.h
  shell/mode.h shell/verdict_labels.h shell/verdict_labels.cpp
  check/options.h check/options.cpp)

set(problems "")
foreach(folder win32 gl sysinfo report tests quadview pfbrowser shell check)
  file(GLOB sources ${ROOT}/${folder}/*.h ${ROOT}/${folder}/*.cpp)
  foreach(source IN LISTS sources)
    get_filename_component(name ${source} NAME)
    set(allowed ${allowed_${folder}})
    set(test_file FALSE)
    if(name MATCHES "_test\\.cpp$")
      list(APPEND allowed testsupport)
      set(test_file TRUE)
    endif()
    file(STRINGS ${source} includes REGEX "^#include [\"<]")
    foreach(line IN LISTS includes)
      if(line MATCHES "^#include \"([a-z0-9_]+)/([a-z0-9_.]+)\"")
        set(from ${CMAKE_MATCH_1})
        set(header ${CMAKE_MATCH_1}/${CMAKE_MATCH_2})
        if(NOT from IN_LIST allowed)
          string(APPEND problems "\n  ${folder}/${name} includes ${from}/")
        endif()
        if(header STREQUAL "gl/device_state.h" AND NOT folder STREQUAL "gl" AND NOT test_file)
          string(APPEND problems "\n  ${folder}/${name} reads the device layer's state")
        endif()
      endif()
      if("${folder}/${name}" IN_LIST pure AND line MATCHES "^#include <(windows|commctrl|GL/gl)\\.h>")
        string(APPEND problems "\n  ${folder}/${name} is pure but includes a Windows header")
      endif()
    endforeach()
  endforeach()
endforeach()
if(problems)
  message(FATAL_ERROR "sources include what they may not:${problems}")
endif()
