# Packager.cmake: build a resource pack and its generated sources as part of a CMake build.
#
#   include(Packager)
#   packager_add_pack(TARGET <name> BMP_ROOT <dir> OUTPUT_DIR <dir>
#                     [VERSION <a.b.c.d>] [SECTOR <n>] [CHECK])
#
# Adds the target <name>, built by default, that runs packager on the bmp tree BMP_ROOT (the folder
# holding icons/list.txt and screens/list.txt) and leaves oled.pack, Icons.h, Screens.h,
# IconsHelper.cpp, Icons.py, Screens.py and commands.py in OUTPUT_DIR.
#
# - packager reruns when a list file or any bitmap it names changes. The list files are read at
#   configure time to learn the bitmaps, and CMake re-reads them whenever they change.
# - packager always runs in a staging folder of its own (it reads bmp/ and writes into the current
#   folder). Its outputs are then copied into OUTPUT_DIR only where their contents differ, so a
#   rebuild that changes nothing leaves every file in OUTPUT_DIR untouched and nothing that includes
#   them recompiles. An output the run no longer writes is removed from OUTPUT_DIR.
# - packager reports failed images only through its exit status 0 and a silent log. With CHECK,
#   `packinspect check` runs first and fails the build on any image that would fail, and
#   `packinspect verify` checks the new pack.
#
# The tools are taken from the variables PACKAGER_EXECUTABLE and PACKINSPECT_EXECUTABLE when set,
# else from the targets packager and packinspect of the same build, else from the PATH. Tools built
# for another machine run through PACKAGER_EMULATOR when it is set (a list: the emulator and its
# arguments, for example qemu-arm-static).

include_guard(GLOBAL)

set(_PACKAGER_MODULE_FILE "${CMAKE_CURRENT_LIST_FILE}")

# Every file packager may write, in the order it writes them.
set(_PACKAGER_OUTPUT_FILES oled.pack Icons.h Icons.py commands.py IconsHelper.cpp Screens.h Screens.py)

# Script mode, used by the build step itself: copy what changed from the staging folder.
if(CMAKE_SCRIPT_MODE_FILE AND DEFINED PACKAGER_COPY_FROM)
    file(MAKE_DIRECTORY "${PACKAGER_COPY_TO}")
    foreach(output IN LISTS _PACKAGER_OUTPUT_FILES)
        if(EXISTS "${PACKAGER_COPY_FROM}/${output}")
            file(COPY_FILE "${PACKAGER_COPY_FROM}/${output}" "${PACKAGER_COPY_TO}/${output}" ONLY_IF_DIFFERENT)
        else()
            file(REMOVE "${PACKAGER_COPY_TO}/${output}")
        endif()
    endforeach()
    return()
endif()

# The files a list.txt names, as packager reads it: one per line, blanks around it dropped, empty
# lines skipped, ".bmp" added to a name without an extension.
function(_packager_listed_files list_file folder out_var)
    set(files "")
    if(EXISTS "${list_file}")
        file(STRINGS "${list_file}" lines)
        foreach(line IN LISTS lines)
            string(STRIP "${line}" item)
            if(item STREQUAL "")
                continue()
            endif()
            get_filename_component(last "${item}" NAME)
            if(NOT last MATCHES "\\.[^.]")
                string(APPEND item ".bmp")
            endif()
            list(APPEND files "${folder}/${item}")
        endforeach()
    endif()
    set(${out_var} "${files}" PARENT_SCOPE)
endfunction()

# The command that runs a tool: a given path, the target of this build, or a program on the PATH.
function(_packager_tool tool variable out_command out_depends)
    if(NOT "${${variable}}" STREQUAL "")
        set(${out_command} ${PACKAGER_EMULATOR} "${${variable}}" PARENT_SCOPE)
        set(${out_depends} "${${variable}}" PARENT_SCOPE)
    elseif(TARGET ${tool})
        set(${out_command} ${PACKAGER_EMULATOR} "$<TARGET_FILE:${tool}>" PARENT_SCOPE)
        set(${out_depends} ${tool} PARENT_SCOPE)
    else()
        find_program(${variable} ${tool} REQUIRED)
        set(${out_command} ${PACKAGER_EMULATOR} "${${variable}}" PARENT_SCOPE)
        set(${out_depends} "${${variable}}" PARENT_SCOPE)
    endif()
endfunction()

function(packager_add_pack)
    cmake_parse_arguments(PARSE_ARGV 0 ARG "CHECK" "TARGET;BMP_ROOT;OUTPUT_DIR;VERSION;SECTOR" "")
    foreach(required IN ITEMS TARGET BMP_ROOT OUTPUT_DIR)
        if(NOT ARG_${required})
            message(FATAL_ERROR "packager_add_pack: ${required} is required")
        endif()
    endforeach()
    if(ARG_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "packager_add_pack: unknown arguments ${ARG_UNPARSED_ARGUMENTS}")
    endif()
    if(NOT ARG_VERSION)
        set(ARG_VERSION 0.6.0.0)
    endif()
    if(NOT ARG_SECTOR)
        set(ARG_SECTOR 12)
    endif()
    get_filename_component(bmp_root "${ARG_BMP_ROOT}" ABSOLUTE BASE_DIR "${CMAKE_CURRENT_SOURCE_DIR}")
    get_filename_component(output_dir "${ARG_OUTPUT_DIR}" ABSOLUTE BASE_DIR "${CMAKE_CURRENT_BINARY_DIR}")

    # Changing a list file reconfigures, which reads it again; the bitmaps it names become the
    # dependencies of the build step.
    set(depends "")
    foreach(kind IN ITEMS icons screens)
        set(list_file "${bmp_root}/${kind}/list.txt")
        set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${list_file}")
        _packager_listed_files("${list_file}" "${bmp_root}/${kind}" files)
        if(EXISTS "${list_file}")
            list(APPEND depends "${list_file}")
        endif()
        list(APPEND depends ${files})
    endforeach()

    _packager_tool(packager PACKAGER_EXECUTABLE packager_command packager_depends)
    set(staging "${CMAKE_CURRENT_BINARY_DIR}/${ARG_TARGET}-staging")
    set(work "${staging}/work")
    set(stamp "${staging}/${ARG_TARGET}.stamp")
    file(MAKE_DIRECTORY "${staging}")

    set(check_commands "")
    set(verify_commands "")
    if(ARG_CHECK)
        _packager_tool(packinspect PACKINSPECT_EXECUTABLE packinspect_command packinspect_depends)
        list(APPEND packager_depends ${packinspect_depends})
        set(check_commands COMMAND ${CMAKE_COMMAND} -E chdir "${work}" ${packinspect_command} check
                                   --sector=${ARG_SECTOR} bmp/)
        set(verify_commands COMMAND ${CMAKE_COMMAND} -E chdir "${work}" ${packinspect_command} verify oled.pack)
    endif()

    set(byproducts "")
    foreach(output IN LISTS _PACKAGER_OUTPUT_FILES)
        list(APPEND byproducts "${output_dir}/${output}")
    endforeach()

    add_custom_command(
        OUTPUT "${stamp}"
        BYPRODUCTS ${byproducts}
        COMMAND ${CMAKE_COMMAND} -E rm -rf "${work}"
        COMMAND ${CMAKE_COMMAND} -E make_directory "${work}"
        COMMAND ${CMAKE_COMMAND} -E copy_directory "${bmp_root}" "${work}/bmp"
        ${check_commands}
        COMMAND ${CMAKE_COMMAND} -E chdir "${work}" ${packager_command} version ${ARG_VERSION} sector ${ARG_SECTOR}
        ${verify_commands}
        COMMAND ${CMAKE_COMMAND} -DPACKAGER_COPY_FROM=${work} -DPACKAGER_COPY_TO=${output_dir}
                -P "${_PACKAGER_MODULE_FILE}"
        COMMAND ${CMAKE_COMMAND} -E touch "${stamp}"
        DEPENDS ${depends} ${packager_depends}
        WORKING_DIRECTORY "${staging}"
        COMMENT "Packing ${bmp_root} into ${output_dir}"
        VERBATIM)
    add_custom_target(${ARG_TARGET} ALL DEPENDS "${stamp}")
endfunction()
