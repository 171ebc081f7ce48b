# Build settings shared by every target of the project, and two small helpers so that a folder's
# CMakeLists.txt is one call: one library per source folder, one test executable per test folder.

set(CMAKE_POSITION_INDEPENDENT_CODE ON)

# Exceptions record the source file relative to the repository root.
add_compile_options("-fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=")
# Under ccache with a base_dir, a build folder inside the checkout (build/dev, build/cross-armhf)
# hands the compiler the sources relative to it, as ../../lib/...: that prefix is mapped away too.
file(RELATIVE_PATH zar_source_from_build ${PROJECT_BINARY_DIR} ${PROJECT_SOURCE_DIR})
if(zar_source_from_build MATCHES "^((\\.\\./)*\\.\\.)/?$")
    add_compile_options("-fmacro-prefix-map=${CMAKE_MATCH_1}/=")
endif()
# How the tests start a program of this build: directly, or, in a build for another machine, through
# the emulator that the toolchain file names (qemu-user), so that no binfmt handler is needed. The
# words are kept as one line for the tests' shell commands and the scripts they run.
set(ZAR_EMULATOR "")
if(CMAKE_CROSSCOMPILING)
    if(PACKAGER_BUILD_TESTS AND NOT CMAKE_CROSSCOMPILING_EMULATOR)
        message(FATAL_ERROR "The tests of a build for another machine start its programs through "
            "CMAKE_CROSSCOMPILING_EMULATOR (qemu-user: see cmake/toolchains/ and scripts/cross), which is "
            "not set. Set it, or configure with -DPACKAGER_BUILD_TESTS=OFF to build only the tools.")
    endif()
    list(JOIN CMAKE_CROSSCOMPILING_EMULATOR " " ZAR_EMULATOR)
endif()

# Symbol names in captured call stacks need the executable's symbols exported.
add_link_options(-rdynamic)

if(PACKAGER_SANITIZE)
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined -fno-sanitize-recover=all)
endif()

set(ZAR_WARNINGS -Wall -Wextra -Wpedantic)
if(PACKAGER_WARNINGS_AS_ERRORS)
    list(APPEND ZAR_WARNINGS -Werror)
endif()

# zar_add_library(<name> ALIAS Zar::<Name> INCLUDE_ROOT <dir> SOURCES <file>... [DEPS <target>...])
# One static library of the listed headers and sources (relative to the calling folder; a sub-folder's
# files are written with their folder), whose public include root is INCLUDE_ROOT. Other targets link
# it by its alias only, the name it would have if it were installed. Headers alone give an INTERFACE
# target.
function(zar_add_library name)
    cmake_parse_arguments(ARG "" "ALIAS;INCLUDE_ROOT" "SOURCES;DEPS" ${ARGN})
    if(NOT ARG_ALIAS OR NOT ARG_INCLUDE_ROOT OR NOT ARG_SOURCES OR ARG_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "zar_add_library(${name}): ALIAS, INCLUDE_ROOT and SOURCES are required, got: ${ARGN}")
    endif()
    set(compiled ${ARG_SOURCES})
    list(FILTER compiled INCLUDE REGEX "\\.cpp$")
    if(compiled)
        add_library(${name} STATIC ${ARG_SOURCES})
        target_include_directories(${name} PUBLIC ${ARG_INCLUDE_ROOT})
        target_link_libraries(${name} PUBLIC ${ARG_DEPS})
        target_compile_options(${name} PRIVATE ${ZAR_WARNINGS})
    else()
        add_library(${name} INTERFACE ${ARG_SOURCES})
        target_include_directories(${name} INTERFACE ${ARG_INCLUDE_ROOT})
        target_link_libraries(${name} INTERFACE ${ARG_DEPS})
    endif()
    add_library(${ARG_ALIAS} ALIAS ${name})
endfunction()

# zar_add_packager_main(<target>)
# Compiles the packager's main source into the target once more, with main renamed PackagerMain, so
# that tests, benchmarks and fuzz targets call the tool's command line and build driver in-process.
function(zar_add_packager_main target)
    set(source ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/../src/tools/packager/packager.cpp)
    cmake_path(NORMAL_PATH source)
    target_sources(${target} PRIVATE ${source})
    set_source_files_properties(${source} PROPERTIES COMPILE_DEFINITIONS "main=PackagerMain")
endfunction()

# zar_add_test_folder(<name> SOURCES <file>... [DEPS <target>...])
# Builds the listed *Test.cpp files of the calling folder (and the headers they share) into one
# GoogleTest executable, whose tests are registered with CTest one by one.
function(zar_add_test_folder name)
    cmake_parse_arguments(ARG "" "LEAK_SUPPRESSIONS" "SOURCES;DEPS" ${ARGN})
    if(NOT ARG_SOURCES OR ARG_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "zar_add_test_folder(${name}): SOURCES is required, got: ${ARGN}")
    endif()
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE ${ARG_DEPS} Zar::TestSupport GTest::gtest GTest::gmock GTest::gtest_main)
    target_compile_options(${name} PRIVATE ${ZAR_WARNINGS})
    target_compile_definitions(${name} PRIVATE
        PACKAGER_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
        PACKAGER_BINARY_DIR="${PROJECT_BINARY_DIR}"
        PACKAGER_QT_MODULE="$<TARGET_FILE:zar_qt_input>")
    # Test executables do not lie beside the Qt image module: the tests that load a Qt format point
    # the loader at the module of this build.
    add_dependencies(${name} zar_qt_input)
    # packinspect starts packager through PACKINSPECT_EMULATOR when it is set. In a sanitizer build
    # (never one for another machine), LEAK_SUPPRESSIONS (a file of the folder) turns LeakSanitizer's
    # walk of thread-local storage off and names what it then takes for leaks. One variable only:
    # gtest_discover_tests keeps the first element of a list.
    set(environment "PACKINSPECT_EMULATOR=${ZAR_EMULATOR}")
    if(ARG_LEAK_SUPPRESSIONS AND PACKAGER_SANITIZE)
        set(environment "LSAN_OPTIONS=use_tls=0:print_suppressions=0:suppressions=${CMAKE_CURRENT_SOURCE_DIR}/${ARG_LEAK_SUPPRESSIONS}")
    endif()
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST WORKING_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}
        PROPERTIES ENVIRONMENT "${environment}")
endfunction()
