function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "${ARGN}\nended with ${result}:\n${output}")
  endif()
endfunction()

file(REMOVE_RECURSE ${SCRATCH})
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${SCRATCH}/root)
run(${CMAKE_COMMAND} -G Ninja -S ${USER_PROJECT} -B ${SCRATCH}/user -DCMAKE_PREFIX_PATH=${SCRATCH}/root
    -DCMAKE_CXX_COMPILER=${CXX} "-DCMAKE_C_FLAGS=${FLAGS}" "-DCMAKE_CXX_FLAGS=${FLAGS}")
run(${CMAKE_COMMAND} --build ${SCRATCH}/user)

set(ENV{IVI_CONFIG_STORE} ${SCRATCH}/none.xml)
run(${SCRATCH}/user/use_driver)

# The supply prints its resource as the last word of its first line, and goes when the program has ended.
file(WRITE ${SCRATCH}/run.sh [[
set -e
"$1" --load 1=10 --for 60 >"$2/ready" &
supply=$!
trap 'kill $supply' EXIT
for attempt in $(seq 100); do [ -s "$2/ready" ] && break; sleep 0.05; done
read -r ready <"$2/ready"
"$2/user/use_instrument" "${ready##* }"
]])
run(bash ${SCRATCH}/run.sh ${SUPPLY} ${SCRATCH})
