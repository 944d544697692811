# Usage: cmake -DLIBRARY=<path of libsteeldesign.so> -P CheckExports.cmake
# Fails unless `nm -D --defined-only` lists both flat entry points under their plain C names.
find_program(NM_TOOL NAMES nm REQUIRED)
execute_process(COMMAND ${NM_TOOL} -D --defined-only ${LIBRARY}
                OUTPUT_VARIABLE symbols RESULT_VARIABLE rc)
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "nm failed on ${LIBRARY}")
endif()
foreach(name CALL_STEEL_DESIGN momentenbeiwert_drill_zeta)
  if(NOT symbols MATCHES "[0-9a-f]+ T ${name}\n")
    message(FATAL_ERROR "${name} is not exported unmangled from ${LIBRARY}")
  endif()
  message(STATUS "exported: ${name}")
endforeach()
