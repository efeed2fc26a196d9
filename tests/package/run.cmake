# run(COMMAND...) runs a command, which must succeed, and stores its output in `output`.
function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE said ERROR_VARIABLE said)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "${ARGN}\nended with ${result}:\n${said}")
  endif()
  set(output "${said}" PARENT_SCOPE)
endfunction()

# Each fails when its condition does not hold.
function(expect_match text expression)
  if(NOT "${text}" MATCHES "${expression}")
    message(FATAL_ERROR "no '${expression}' in:\n${text}")
  endif()
endfunction()

function(expect_no_match text expression)
  if("${text}" MATCHES "${expression}")
    message(FATAL_ERROR "'${expression}' in:\n${text}")
  endif()
endfunction()
