# Packager.cmake: build a resource pack and its generated sources as part of a CMake build.
#
#   find_package(Packager REQUIRED)     # or include(Packager) with this folder on CMAKE_MODULE_PATH
#   packager_add_pack(TARGET <name> BMP_ROOT <dir> OUTPUT_DIR <dir>
#                     [VERSION <a.b.c.d>] [SECTOR <n>] [ICON <WxH>] [STRICT] [CHECK])
#
# Adds the target <name>, built by default, that builds the bmp tree BMP_ROOT (the folder holding
# icons/list.txt and screens/list.txt) with `packinspect build` and leaves oled.pack, Icons.h,
# Screens.h, IconsHelper.cpp, Icons.py, Screens.py and commands.py in OUTPUT_DIR.
#
# - The build fails on any problem, with the reasons in the build log: packinspect checks the tree
#   (images packed other than drawn, sizes, names the generated sources cannot compile, lists that
#   lose items or sources), runs packager itself, verifies the pack and tests that the sources are
#   whole. CHECK is the default and the keyword stays accepted; STRICT fails on the check's warnings
#   too; ICON gives the size every icon must have.
# - Outputs are replaced all together and only after every step passed, so a failed build never
#   leaves a new pack beside old sources; an output whose bytes did not change keeps its file and its
#   time, so nothing that includes it recompiles for nothing.
# - The step reruns when a list file changes, appears or disappears, and when a bitmap a list names
#   changes or appears: the lists are read at configure time, and CMake reconfigures when one of them
#   changes or when a watched file comes or goes.
#
# packinspect is taken from the variable PACKINSPECT_EXECUTABLE when set (PackagerConfig.cmake sets
# it), else from the target packinspect of the same build, else from the PATH; it runs the packager
# beside it, else the one on the PATH. Tools built for another machine run through PACKAGER_EMULATOR
# when it is set (a list: the emulator and its arguments, for example qemu-arm-static), and
# packinspect then starts packager through it as well.

include_guard(GLOBAL)

# Every file packager writes, in the order it writes them.
set(_PACKAGER_OUTPUT_FILES oled.pack Icons.h Icons.py commands.py IconsHelper.cpp Screens.h Screens.py)

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

# Reconfigures when the file comes or goes: a glob that CMake checks again before every build.
function(_packager_watch path)
    file(GLOB watched CONFIGURE_DEPENDS "${path}")
endfunction()

# The command that runs packinspect: a given path, the target of this build, or a program on the PATH.
function(_packager_packinspect out_command out_depends)
    if(NOT "${PACKINSPECT_EXECUTABLE}" STREQUAL "")
        set(${out_command} ${PACKAGER_EMULATOR} "${PACKINSPECT_EXECUTABLE}" PARENT_SCOPE)
        set(${out_depends} "${PACKINSPECT_EXECUTABLE}" PARENT_SCOPE)
    elseif(TARGET packinspect)
        set(${out_command} ${PACKAGER_EMULATOR} "$<TARGET_FILE:packinspect>" PARENT_SCOPE)
        set(${out_depends} packinspect PARENT_SCOPE)
    else()
        find_program(PACKINSPECT_EXECUTABLE packinspect REQUIRED)
        set(${out_command} ${PACKAGER_EMULATOR} "${PACKINSPECT_EXECUTABLE}" PARENT_SCOPE)
        set(${out_depends} "${PACKINSPECT_EXECUTABLE}" PARENT_SCOPE)
    endif()
endfunction()

function(packager_add_pack)
    cmake_parse_arguments(PARSE_ARGV 0 ARG "CHECK;STRICT" "TARGET;BMP_ROOT;OUTPUT_DIR;VERSION;SECTOR;ICON" "")
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
    set(staging "${CMAKE_CURRENT_BINARY_DIR}/${ARG_TARGET}-staging")
    set(stamp "${staging}/${ARG_TARGET}.stamp")
    file(MAKE_DIRECTORY "${staging}")

    # The lists and the files they name that exist are the step's dependencies; those that do not
    # exist yet are watched, and so are the lists themselves. Which of them exist is written to a
    # file that changes, and so reruns the step, when a list or a named file comes or goes.
    set(depends "")
    set(present "")
    foreach(kind IN ITEMS icons screens)
        set(list_file "${bmp_root}/${kind}/list.txt")
        _packager_watch("${list_file}")
        _packager_listed_files("${list_file}" "${bmp_root}/${kind}" files)
        if(EXISTS "${list_file}")
            set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${list_file}")
        endif()
        foreach(file IN ITEMS "${list_file}" ${files})
            if(EXISTS "${file}")
                list(APPEND depends "${file}")
                string(APPEND present "${file}\n")
            else()
                _packager_watch("${file}")
                string(APPEND present "missing ${file}\n")
            endif()
        endforeach()
    endforeach()
    set(inputs "${staging}/${ARG_TARGET}.inputs")
    file(CONFIGURE OUTPUT "${inputs}" CONTENT "${present}")

    _packager_packinspect(packinspect_command packinspect_depends)
    list(JOIN PACKAGER_EMULATOR " " emulator_words)
    set(options --sector=${ARG_SECTOR} --version=${ARG_VERSION})
    if(ARG_ICON)
        list(APPEND options --icon=${ARG_ICON})
    endif()
    if(ARG_STRICT)
        list(APPEND options --strict)
    endif()
    set(byproducts "")
    foreach(output IN LISTS _PACKAGER_OUTPUT_FILES)
        list(APPEND byproducts "${output_dir}/${output}")
    endforeach()

    add_custom_command(
        OUTPUT "${stamp}"
        BYPRODUCTS ${byproducts}
        COMMAND ${CMAKE_COMMAND} -E env "PACKINSPECT_EMULATOR=${emulator_words}" ${packinspect_command} build ${options} "${bmp_root}" -o "${output_dir}"
        COMMAND ${CMAKE_COMMAND} -E touch "${stamp}"
        DEPENDS ${depends} "${inputs}" ${packinspect_depends}
        WORKING_DIRECTORY "${staging}"
        COMMENT "Packing ${bmp_root} into ${output_dir}"
        VERBATIM)
    add_custom_target(${ARG_TARGET} ALL DEPENDS "${stamp}")
endfunction()
