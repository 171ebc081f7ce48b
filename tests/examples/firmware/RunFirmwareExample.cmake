# Builds examples/firmware as a firmware team would and runs its test: against the build tree's
# Packager package, or against a copy of the build installed into a scratch prefix.
#
#   cmake -DSOURCE_DIR=<examples/firmware> -DWORK_DIR=<scratch folder> -DGENERATOR=Ninja
#         -DPYTHON=<python3> [-DPACKAGER_DIR=<build folder>] [-DINSTALL_FROM=<build folder>]
#         [-DEMULATOR=<words>] -P RunFirmwareExample.cmake
#
# With INSTALL_FROM the build is installed into WORK_DIR/prefix first and the example finds it
# through CMAKE_PREFIX_PATH, as it would find a package installed under /usr. EMULATOR starts tools
# built for another machine (the module's PACKAGER_EMULATOR); the example is built for this machine.
cmake_minimum_required(VERSION 3.25)
separate_arguments(emulator UNIX_COMMAND "${EMULATOR}")

function(run label)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${label} failed:\n${output}")
    endif()
    set(output "${output}" PARENT_SCOPE)
endfunction()

file(REMOVE_RECURSE "${WORK_DIR}")
set(build "${WORK_DIR}/build")
set(configure_options)
if(INSTALL_FROM)
    set(prefix "${WORK_DIR}/prefix")
    run("installing ${INSTALL_FROM}" "${CMAKE_COMMAND}" --install "${INSTALL_FROM}" --prefix "${prefix}")
    list(APPEND configure_options "-DCMAKE_PREFIX_PATH=${prefix}")
    set(expected_tool "${prefix}/bin/packager")
else()
    list(APPEND configure_options "-DPackager_DIR=${PACKAGER_DIR}")
endif()

# Not through run(): its arguments are one CMake list, which would split an emulator of several words
# into several arguments; quoted here, the words stay one list value of PACKAGER_EMULATOR.
execute_process(COMMAND "${CMAKE_COMMAND}" -S "${SOURCE_DIR}" -B "${build}" -G "${GENERATOR}"
                        "-DPACKAGER_EMULATOR=${emulator}" ${configure_options}
                RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "configuring the example failed:\n${output}")
endif()
if(expected_tool)
    file(STRINGS "${build}/CMakeCache.txt" tool REGEX "^PACKAGER_EXECUTABLE:")
    string(REGEX REPLACE "^[^=]*=" "" tool "${tool}")
    file(REAL_PATH "${tool}" tool)
    if(NOT tool STREQUAL expected_tool)
        message(FATAL_ERROR "the example found packager at ${tool}, not in the scratch prefix")
    endif()
endif()
run("building the example" "${CMAKE_COMMAND}" --build "${build}")
run("the example's test" "${CMAKE_CTEST_COMMAND}" --test-dir "${build}" --output-on-failure --verbose)

foreach(line IN ITEMS "Icon 100 Play sector 12" "Icon 111 Menu_Selected sector 13"
                      "8 sectors match the header's CRC table" "the pack and the generated sources agree")
    string(FIND "${output}" "${line}" found)
    if(found EQUAL -1)
        message(FATAL_ERROR "the example's test does not print \"${line}\":\n${output}")
    endif()
endforeach()
message(STATUS "${output}")

# The demo fails on a pack whose bytes no longer match the header: one bit of the first icon sector
# flipped. (The script is on lines of its own: run() passes its arguments on as a CMake list.)
set(pack "${build}/generated/oled.pack")
set(damaged "${WORK_DIR}/damaged.pack")
run("damaging a copy of the pack" "${PYTHON}" -c
    "import sys\nb = bytearray(open(sys.argv[1], 'rb').read())\nb[4096] ^= 1\nopen(sys.argv[2], 'wb').write(b)"
    "${pack}" "${damaged}")
execute_process(COMMAND "${build}/firmware-demo" "${damaged}" RESULT_VARIABLE result ERROR_VARIABLE errors
                OUTPUT_QUIET)
if(NOT result EQUAL 1 OR NOT errors MATCHES "firmware-demo: mismatch: sector 12 has CRC [0-9]+, the header [0-9]+")
    message(FATAL_ERROR "the demo accepted a damaged pack (exit ${result}):\n${errors}")
endif()
