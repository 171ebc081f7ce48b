# Builds a firmware project whose CMakeLists.txt holds the README's CMake example as it is written:
# the first ```cmake block under the heading "## CMake" of README.md, read here so that the two cannot
# drift apart. The project finds the Packager package in PACKAGER_DIR (a build tree or an installed
# prefix's share/cmake/Packager), packs a small tree and compiles a firmware against the sources.
#
#   cmake -DREADME=<README.md> -DPACKAGER_DIR=<dir> -DSOURCE_DIR=<this folder> -DWORK_DIR=<scratch>
#         [-DEMULATOR=<words>]
#         -DGENERATOR=Ninja -P ReadmeSnippet.cmake
cmake_minimum_required(VERSION 3.25)

file(READ "${README}" readme)
string(FIND "${readme}" "\n## CMake\n" heading)
if(heading EQUAL -1)
    message(FATAL_ERROR "README.md has no heading '## CMake'")
endif()
string(SUBSTRING "${readme}" ${heading} -1 section)
string(FIND "${section}" "\n```cmake\n" start)
if(start EQUAL -1)
    message(FATAL_ERROR "README.md has no ```cmake block under '## CMake'")
endif()
math(EXPR start "${start} + 10")
string(SUBSTRING "${section}" ${start} -1 section)
string(FIND "${section}" "\n```" end)
math(EXPR end "${end} + 1")
string(SUBSTRING "${section}" 0 ${end} snippet)

set(source "${WORK_DIR}/source")
set(build "${WORK_DIR}/build")
file(REMOVE_RECURSE "${WORK_DIR}")
file(COPY "${SOURCE_DIR}/firmware.cpp" DESTINATION "${source}")
file(WRITE "${source}/CMakeLists.txt" "cmake_minimum_required(VERSION 3.25)
project(readme_firmware LANGUAGES CXX)
add_executable(firmware firmware.cpp)
target_compile_features(firmware PRIVATE cxx_std_17)
# The README's example, as written:
${snippet}")

# Text images: one character per pixel, X lit.
string(REPEAT "X X X X X X X X X X X X X X X X \n" 24 icon)
string(REPEAT "XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  XX  \n" 64 screen)
file(WRITE "${source}/bmp/icons/Play.txt" "${icon}")
file(WRITE "${source}/bmp/icons/Stop.txt" "${icon}")
file(WRITE "${source}/bmp/icons/list.txt" "Play.txt\nStop.txt\n")
file(WRITE "${source}/bmp/screens/Splash.txt" "${screen}")
file(WRITE "${source}/bmp/screens/list.txt" "Splash.txt\n")

# EMULATOR starts tools built for another machine (the module's PACKAGER_EMULATOR).
separate_arguments(emulator UNIX_COMMAND "${EMULATOR}")
execute_process(COMMAND "${CMAKE_COMMAND}" -S "${source}" -B "${build}" -G "${GENERATOR}"
                        "-DPackager_DIR=${PACKAGER_DIR}" "-DPACKAGER_EMULATOR=${emulator}"
                RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "configuring the README's example failed:\n${snippet}\n${output}")
endif()
execute_process(COMMAND "${CMAKE_COMMAND}" --build "${build}"
                RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "building the README's example failed:\n${snippet}\n${output}")
endif()
foreach(file oled.pack Icons.h Icons.py commands.py IconsHelper.cpp Screens.h Screens.py)
    if(NOT EXISTS "${build}/generated/${file}")
        message(FATAL_ERROR "the README's example did not write generated/${file}")
    endif()
endforeach()
message(STATUS "The README's CMake example builds with the package in ${PACKAGER_DIR}")
