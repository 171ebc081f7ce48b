# Tries the Packager module the way a firmware build uses it: configures and builds the project of
# this folder, then touches, edits and adds bitmaps and checks after each build what was rewritten.
#
#   cmake -DPACKAGER_EXECUTABLE=... -DPACKINSPECT_EXECUTABLE=... -DSOURCE_DIR=<this folder>
#         -DWORK_DIR=<scratch folder> -DGENERATOR=Ninja [-DEMULATOR=<words>] -P RunTest.cmake
#
# EMULATOR starts tools built for another machine (the module's PACKAGER_EMULATOR); the project
# itself is built for this machine.
#
# The bitmaps are text images (one character per pixel, a blank for an unlit one), so the test
# writes them itself. File times are compared in whole seconds, hence the pauses before each change.
cmake_minimum_required(VERSION 3.25)

separate_arguments(emulator UNIX_COMMAND "${EMULATOR}")
get_filename_component(module_dir "${CMAKE_CURRENT_LIST_DIR}/../../cmake" ABSOLUTE)
set(source "${WORK_DIR}/source")
set(build "${WORK_DIR}/build")
set(generated "${build}/generated")
set(object "${build}/CMakeFiles/firmware.dir/firmware.cpp.o")
set(stamp "${build}/resources-staging/resources.stamp")
set(outputs oled.pack Icons.h Icons.py commands.py IconsHelper.cpp Screens.h Screens.py)

# A text image of width x height whose lit pixels follow (x + y + seed) mod 3 == 0.
function(write_text_image path width height seed)
    set(text "")
    math(EXPR last_row "${height} - 1")
    math(EXPR last_column "${width} - 1")
    foreach(y RANGE ${last_row})
        set(row "")
        foreach(x RANGE ${last_column})
            math(EXPR lit "(${x} + ${y} + ${seed}) % 3")
            if(lit EQUAL 0)
                string(APPEND row "X")
            else()
                string(APPEND row " ")
            endif()
        endforeach()
        string(APPEND text "${row}\n")
    endforeach()
    file(WRITE "${path}" "${text}")
endfunction()

function(run_build label)
    execute_process(COMMAND "${CMAKE_COMMAND}" --build "${build}"
                    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${label}: the build failed:\n${output}")
    endif()
    set(build_output "${output}" PARENT_SCOPE)
endfunction()

function(times out_var)
    set(result "")
    foreach(file IN LISTS ARGN)
        file(TIMESTAMP "${file}" time "%s" UTC)
        list(APPEND result "${time}")
    endforeach()
    set(${out_var} "${result}" PARENT_SCOPE)
endfunction()

function(expect_same label before after)
    if(NOT "${before}" STREQUAL "${after}")
        message(FATAL_ERROR "${label}: files were rewritten (${before} became ${after})")
    endif()
endfunction()

function(expect_changed label before after)
    if("${before}" STREQUAL "${after}")
        message(FATAL_ERROR "${label}: the file was not rewritten")
    endif()
endfunction()

function(pause)
    execute_process(COMMAND "${CMAKE_COMMAND}" -E sleep 1.1)
endfunction()

list(TRANSFORM outputs PREPEND "${generated}/" OUTPUT_VARIABLE output_paths)

# The project and its bitmaps.
file(REMOVE_RECURSE "${WORK_DIR}")
file(COPY "${SOURCE_DIR}/CMakeLists.txt" "${SOURCE_DIR}/firmware.cpp" DESTINATION "${source}")
write_text_image("${source}/bmp/icons/Play.txt" 32 24 0)
write_text_image("${source}/bmp/icons/Stop.txt" 32 24 1)
write_text_image("${source}/bmp/screens/Splash.txt" 256 64 2)
file(WRITE "${source}/bmp/icons/list.txt" "Play.txt\nStop.txt\n")
file(WRITE "${source}/bmp/screens/list.txt" "Splash.txt\n")

execute_process(COMMAND "${CMAKE_COMMAND}" -S "${source}" -B "${build}" -G "${GENERATOR}"
                        "-DPACKAGER_EXECUTABLE=${PACKAGER_EXECUTABLE}"
                        "-DPACKINSPECT_EXECUTABLE=${PACKINSPECT_EXECUTABLE}"
                        "-DPACKAGER_MODULE_DIR=${module_dir}"
                        "-DPACKAGER_EMULATOR=${emulator}"
                RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "configuring the test project failed:\n${output}")
endif()

# 1. The first build writes every output and compiles the firmware against them.
run_build("first build")
foreach(path IN LISTS output_paths ITEMS "${object}")
    if(NOT EXISTS "${path}")
        message(FATAL_ERROR "first build: ${path} was not written")
    endif()
endforeach()

# 2. A build with nothing changed does nothing at all.
times(first ${output_paths} "${stamp}" "${object}")
pause()
run_build("no-op build")
times(second ${output_paths} "${stamp}" "${object}")
expect_same("no-op build" "${first}" "${second}")
if(GENERATOR STREQUAL "Ninja" AND NOT build_output MATCHES "no work to do")
    message(FATAL_ERROR "no-op build: ninja did some work:\n${build_output}")
endif()

# 3. Touching a bitmap reruns packager, but its outputs are the same, so none is copied and the
#    firmware does not recompile.
times(stamp_before "${stamp}")
pause()
file(TOUCH "${source}/bmp/icons/Play.txt")
run_build("touched bitmap")
times(stamp_after "${stamp}")
expect_changed("touched bitmap: the pack" "${stamp_before}" "${stamp_after}")
times(third ${output_paths} "${object}")
list(REMOVE_AT second -2)
expect_same("touched bitmap" "${second}" "${third}")

# 4. Changing a bitmap's pixels changes the pack, but not the headers: the firmware still does not
#    recompile.
times(pack_before "${generated}/oled.pack")
times(header_before "${generated}/Icons.h" "${object}")
pause()
write_text_image("${source}/bmp/icons/Play.txt" 32 24 2)
run_build("edited bitmap")
times(pack_after "${generated}/oled.pack")
times(header_after "${generated}/Icons.h" "${object}")
expect_changed("edited bitmap: the pack" "${pack_before}" "${pack_after}")
expect_same("edited bitmap: the header and the firmware" "${header_before}" "${header_after}")

# 5. A new line in a list reconfigures, packs the new icon and recompiles the firmware.
times(object_before "${object}")
pause()
write_text_image("${source}/bmp/icons/Pause.txt" 32 24 0)
file(APPEND "${source}/bmp/icons/list.txt" "Pause.txt\n")
run_build("new icon")
file(READ "${generated}/Icons.h" icons)
if(NOT icons MATCHES "    Pause,\n")
    message(FATAL_ERROR "new icon: Icons.h does not name it:\n${icons}")
endif()
times(object_after "${object}")
expect_changed("new icon: the firmware" "${object_before}" "${object_after}")

# 6. With CHECK, an image that packager would drop fails the build.
write_text_image("${source}/bmp/icons/Bad-Name.txt" 32 24 0)
file(APPEND "${source}/bmp/icons/list.txt" "Bad-Name.txt\n")
execute_process(COMMAND "${CMAKE_COMMAND}" --build "${build}"
                RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
if(result EQUAL 0)
    message(FATAL_ERROR "bad image: the build passed:\n${output}")
endif()
if(NOT output MATCHES "name cannot contain")
    message(FATAL_ERROR "bad image: the failure does not say why:\n${output}")
endif()

# 7. A screens list that disappears reruns the step, which fails with the reason and leaves the
#    outputs of the last good build as they were.
file(WRITE "${source}/bmp/icons/list.txt" "Play.txt\nStop.txt\nPause.txt\n")
run_build("bad image removed")
times(good ${output_paths})
pause()
file(REMOVE "${source}/bmp/screens/list.txt")
execute_process(COMMAND "${CMAKE_COMMAND}" --build "${build}"
                RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
if(result EQUAL 0)
    message(FATAL_ERROR "screens list removed: the build passed:\n${output}")
endif()
if(NOT output MATCHES "packinspect build: FAIL [^\n]*screens/list.txt: there is no [^\n]*screens/list.txt: packager writes Icons.h")
    message(FATAL_ERROR "screens list removed: the failure does not say why:\n${output}")
endif()
times(kept ${output_paths})
expect_same("screens list removed: the outputs" "${good}" "${kept}")

# 8. The list that appears again reruns the step, which passes.
file(WRITE "${source}/bmp/screens/list.txt" "Splash.txt\n")
run_build("screens list back")
if(NOT build_output MATCHES "Packing ")
    message(FATAL_ERROR "screens list back: the pack was not built again:\n${build_output}")
endif()

message(STATUS "The Packager module rebuilds on change, fails loudly and rewrites nothing otherwise")
