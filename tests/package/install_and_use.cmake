include(${CMAKE_CURRENT_LIST_DIR}/run.cmake)

file(REMOVE_RECURSE ${SCRATCH})
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${SCRATCH}/root)
run(${CMAKE_COMMAND} -G Ninja -S ${USER_PROJECT} -B ${SCRATCH}/user -DCMAKE_PREFIX_PATH=${SCRATCH}/root
    -DCMAKE_CXX_COMPILER=${CXX} "-DCMAKE_C_FLAGS=${FLAGS}" "-DCMAKE_CXX_FLAGS=${FLAGS}")
run(${CMAKE_COMMAND} --build ${SCRATCH}/user)

# The runtime is in a folder that only the driver's run path contains, so it shadows no other VISA.
file(GLOB_RECURSE visa RELATIVE ${SCRATCH}/root ${SCRATCH}/root/*ivivisa*)
expect_match("${visa}" "/tarnex/libivivisa\\.so\\.0")
list(FILTER visa EXCLUDE REGEX "/tarnex/")
expect_match("${visa}" "^$")
file(GLOB_RECURSE driver ${SCRATCH}/root/libTARNEX.so)
run(${READELF} -d ${driver})
expect_match("${output}" "NEEDED[^\n]*\\[libivivisa\\.so\\.0\\]")
expect_match("${output}" "R(UN)?PATH[^\n]*\\[\\$ORIGIN/tarnex\\]")
run(ldd ${driver})
expect_match("${output}" "libivivisa\\.so\\.0 => ${SCRATCH}/root/[^\n]*/tarnex/libivivisa\\.so\\.0")

file(GLOB_RECURSE supply_library ${SCRATCH}/root/libTARNEX_supply.so)
run(${READELF} -d ${supply_library})
expect_match("${output}" "R(UN)?PATH[^\n]*\\[\\$ORIGIN:\\$ORIGIN/tarnex\\]")
run(ldd ${supply_library})
foreach(library "/libTARNEX" "/tarnex/libIviCShared" "/tarnex/libivivisa")
  expect_match("${output}" "=> ${SCRATCH}/root/[^\n]*${library}\\.so")
endforeach()

set(ENV{IVI_CONFIG_STORE} ${SCRATCH}/none.xml)
run(${SCRATCH}/user/use_driver)
run(${SCRATCH}/user/use_supply)

# With pkg-config's flags.
cmake_path(GET supply_library PARENT_PATH library_folder)
set(ENV{PKG_CONFIG_PATH} ${library_folder}/pkgconfig)
run(pkg-config --cflags --libs tarnex-supply)
separate_arguments(pkg_config_flags UNIX_COMMAND "${output} ${FLAGS} -Wl,-rpath,${library_folder}")
run(${CXX} -x c++ ${USER_PROJECT}/use_supply.c -x none -o ${SCRATCH}/user/use_supply_by_pkg_config ${pkg_config_flags})
run(${SCRATCH}/user/use_supply_by_pkg_config)

# The tool and the Python module find the driver that was installed with them.
run(${SCRATCH}/root/bin/tarnexctl identify --options Simulate=1)
expect_match("${output}" "Model:        TX6300\n")
run(ldd ${SCRATCH}/root/bin/tarnexctl)
expect_match("${output}" "libTARNEX\\.so => ${SCRATCH}/root/")
expect_match("${output}" "libivivisa\\.so\\.0 => ${SCRATCH}/root/")
file(GLOB completion ${SCRATCH}/root/share/bash-completion/completions/tarnexctl)
file(GLOB manual ${SCRATCH}/root/share/man/man1/tarnexctl.1)
expect_match("${completion};${manual}" "/tarnexctl;.*/tarnexctl\\.1$")
if(PYTHON)
  set(ENV{PYTHONPATH} ${SCRATCH}/root/lib/python3/dist-packages)
  run(${PYTHON} -B ${CMAKE_CURRENT_LIST_DIR}/use_module.py)
  expect_match("${output}" "^TX6300\n$")
endif()

# The supply prints its resource as the last word of its first line. It is stopped after the program.
file(WRITE ${SCRATCH}/run.sh [[
set -e
"$1" --load 1=10 --for 60 >"$2/ready" &
supply=$!
trap 'kill $supply' EXIT
for attempt in $(seq 100); do [ -s "$2/ready" ] && break; sleep 0.05; done
read -r ready <"$2/ready"
"$2/user/use_instrument" "${ready##* }"
"$2/user/use_supply" "${ready##* }"
]])
run(bash ${SCRATCH}/run.sh ${SUPPLY} ${SCRATCH})
