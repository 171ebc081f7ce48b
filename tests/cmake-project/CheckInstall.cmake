# Installs a build into a scratch prefix and checks what a user gets: both tools, the CMake module
# with its package configuration, and a man page for each tool.
#
#   cmake -DBUILD_DIR=<build folder> -DPREFIX=<scratch prefix> [-DEMULATOR=<words>] -P CheckInstall.cmake
#
# EMULATOR starts the installed tools when they are built for another machine.
cmake_minimum_required(VERSION 3.25)
separate_arguments(emulator UNIX_COMMAND "${EMULATOR}")

file(REMOVE_RECURSE "${PREFIX}")
execute_process(COMMAND "${CMAKE_COMMAND}" --install "${BUILD_DIR}" --prefix "${PREFIX}"
                RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "installing failed:\n${output}")
endif()

set(expected bin/packager bin/packinspect share/cmake/Packager/Packager.cmake
             share/cmake/Packager/PackagerConfig.cmake share/man/man1/packager.1 share/man/man1/packinspect.1)
foreach(file IN LISTS expected)
    if(NOT EXISTS "${PREFIX}/${file}")
        message(FATAL_ERROR "${file} was not installed:\n${output}")
    endif()
endforeach()

# The package configuration points the module at the installed tools.
include("${PREFIX}/share/cmake/Packager/PackagerConfig.cmake")
get_filename_component(packinspect "${PACKINSPECT_EXECUTABLE}" REALPATH)
if(NOT packinspect STREQUAL "${PREFIX}/bin/packinspect")
    message(FATAL_ERROR "PackagerConfig.cmake names ${PACKINSPECT_EXECUTABLE}")
endif()
if(NOT COMMAND packager_add_pack)
    message(FATAL_ERROR "PackagerConfig.cmake does not make packager_add_pack available")
endif()
execute_process(COMMAND ${emulator} "${PACKINSPECT_EXECUTABLE}" --version OUTPUT_VARIABLE version RESULT_VARIABLE result)
if(NOT result EQUAL 0 OR NOT version MATCHES "^packinspect [0-9.]+\n$")
    message(FATAL_ERROR "the installed packinspect does not run: ${version}")
endif()
execute_process(COMMAND ${emulator} "${PREFIX}/bin/packager" nonsense version RESULT_VARIABLE result OUTPUT_VARIABLE help)
if(NOT result EQUAL 1 OR NOT help MATCHES "^packager version")
    message(FATAL_ERROR "the installed packager does not run: ${help}")
endif()
message(STATUS "Installed: ${expected}")
