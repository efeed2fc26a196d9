# Configured for the system's VISA, the driver is linked to it, installs no VISA, and runs over it.
include(${CMAKE_CURRENT_LIST_DIR}/run.cmake)
set(tests ${CMAKE_CURRENT_LIST_DIR})
set(root ${SCRATCH}/root)
set(vendor ${SCRATCH}/vendor_root)
set(build_options -G Ninja -DCMAKE_C_COMPILER=${CC} -DCMAKE_CXX_COMPILER=${CXX}
                  "-DCMAKE_C_COMPILER_LAUNCHER=${LAUNCHER}" "-DCMAKE_CXX_COMPILER_LAUNCHER=${LAUNCHER}")

file(REMOVE_RECURSE ${SCRATCH})
run(${CMAKE_COMMAND} ${build_options} -S ${tests}/vendor -B ${SCRATCH}/vendor)
run(${CMAKE_COMMAND} --build ${SCRATCH}/vendor)
run(${CMAKE_COMMAND} --install ${SCRATCH}/vendor --prefix ${vendor})

# Without a vendor's VISA the message says what to do.
execute_process(COMMAND ${CMAKE_COMMAND} ${build_options} -S ${SOURCE} -B ${SCRATCH}/none -DTARNEX_VISA=system
                        -DTARNEX_TESTS=OFF -DTARNEX_TOOLS=OFF -DTARNEX_SYSTEM_VISA=TARNEX_SYSTEM_VISA-NOTFOUND
                        -DCMAKE_FIND_ROOT_PATH=${SCRATCH}/none -DCMAKE_FIND_ROOT_PATH_MODE_LIBRARY=ONLY
                RESULT_VARIABLE result OUTPUT_QUIET ERROR_VARIABLE output)
expect_match("${result}" "^1$")
expect_match("${output}" "libivivisa.so.0 was not found")

set(driver_options -DTARNEX_VISA=system -DTARNEX_TESTS=OFF -DTARNEX_TOOLS=OFF -DCMAKE_BUILD_TYPE=Debug)
run(${CMAKE_COMMAND} ${build_options} -S ${SOURCE} -B ${SCRATCH}/build ${driver_options}
    -DCMAKE_LIBRARY_PATH=${vendor}/lib)
run(${CMAKE_COMMAND} --build ${SCRATCH}/build)
run(${CMAKE_COMMAND} --install ${SCRATCH}/build --prefix ${root})

file(GLOB_RECURSE built RELATIVE ${SCRATCH} ${SCRATCH}/build/*ivivisa* ${root}/*ivivisa*)
expect_match("${built}" "^$") # no VISA
file(GLOB_RECURSE drivers ${root}/libTARNEX.so)
file(GLOB_RECURSE services ${root}/libIviCShared.so.1)
list(GET drivers 0 driver)
expect_match("${services}" "/tarnex/libIviCShared.so.1$")
run(${READELF} -d ${driver})
expect_match("${output}" "NEEDED[^\n]*\\[libivivisa\\.so\\.0\\]")
expect_no_match("${output}" "vendor_root") # found by the loader's own means, not by a run path

run(${CMAKE_COMMAND} ${build_options} -S ${tests}/vendor_user -B ${SCRATCH}/user -DCMAKE_PREFIX_PATH=${root}
    -DCMAKE_LIBRARY_PATH=${vendor}/lib)
run(${CMAKE_COMMAND} --build ${SCRATCH}/user)
set(ENV{IVI_CONFIG_STORE} ${SCRATCH}/none.xml)
set(ENV{LD_LIBRARY_PATH} ${vendor}/lib)
run(ldd ${driver})
expect_match("${output}" "libivivisa\\.so\\.0 => ${vendor}/lib/libivivisa\\.so\\.0")
run(${SCRATCH}/user/use_driver)
expect_match("${output}" "^vendor\n$") # the firmware revision of its instrument
run(${SCRATCH}/user/use_instrument)
