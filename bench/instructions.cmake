# Counts the instructions of one call of each function in the record. Passes when each count is within 3 % of the recorded
# one. Skips the comparison when another compiler version built the program: its counts cannot be compared.

file(STRINGS ${RECORD} compiler REGEX "^compiler ")
if(NOT compiler MATCHES "^compiler ([A-Za-z]+ [0-9.]+)$")
  message(FATAL_ERROR "${RECORD}: no line \"compiler NAME VERSION\"")
endif()
if(NOT CMAKE_MATCH_1 STREQUAL COMPILER)
  message(STATUS "SKIPPED: the record is for ${CMAKE_MATCH_1}, this build is by ${COMPILER}. Instructions per call were NOT compared.")
  return()
endif()

# Without the C library's variants for newer processors, so that the count is the same on every machine.
set(ENV{GLIBC_TUNABLES} glibc.cpu.hwcaps=-AVX512F,-AVX2,-AVX,-AVX_Fast_Unaligned_Load,-BMI2,-BMI1,-ERMS,-FSRM,-SSE4_2,-SSSE3)

function(count function calls result)
  execute_process(
    COMMAND ${VALGRIND} --tool=callgrind --callgrind-out-file=${SCRATCH}/instructions.callgrind ${PROGRAM} ${function}
            ${calls}
    ERROR_VARIABLE log COMMAND_ERROR_IS_FATAL ANY)
  if(NOT log MATCHES "Collected : ([0-9]+)")
    message(FATAL_ERROR "no instruction count in:\n${log}")
  endif()
  set(${result} ${CMAKE_MATCH_1} PARENT_SCOPE)
endfunction()

set(failed "")
file(STRINGS ${RECORD} rows REGEX "^[A-Z]")
foreach(row IN LISTS rows)
  if(NOT row MATCHES "^([A-Za-z0-9]+) +([0-9]+)$")
    message(FATAL_ERROR "${RECORD}: not \"function count\": ${row}")
  endif()
  set(function ${CMAKE_MATCH_1})
  set(recorded ${CMAKE_MATCH_2})
  count(${function} 1000 few)
  count(${function} 2000 many)
  math(EXPR counted "(${many} - ${few}) / 1000")
  math(EXPR permille "(${counted} - ${recorded}) * 1000 / ${recorded}")
  message(STATUS "${function}: ${counted} instructions per call, recorded ${recorded}")
  if(permille GREATER 30 OR permille LESS -30)
    list(APPEND failed ${function})
  endif()
endforeach()
if(NOT rows OR failed)
  message(FATAL_ERROR "off the record by more than 3 %: ${failed}")
endif()
