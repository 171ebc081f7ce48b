# Build settings shared by every target of the project, and two small helpers so that a folder's
# CMakeLists.txt is one call: one library per source folder, one test executable per test folder.

set(CMAKE_POSITION_INDEPENDENT_CODE ON)

# Exceptions record the source file relative to the repository root.
add_compile_options("-fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=")
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

# zar_add_library(<name> INCLUDE_ROOT <dir> [SUBDIRS <dir>...] [DEPS <target>...])
# Builds every .cpp of the calling folder (and of the listed sub-folders) into one static library
# whose public include root is INCLUDE_ROOT. A folder holding only headers gives an INTERFACE target.
function(zar_add_library name)
    cmake_parse_arguments(ARG "" "INCLUDE_ROOT" "SUBDIRS;DEPS" ${ARGN})
    set(folders ${CMAKE_CURRENT_SOURCE_DIR})
    foreach(sub IN LISTS ARG_SUBDIRS)
        list(APPEND folders ${CMAKE_CURRENT_SOURCE_DIR}/${sub})
    endforeach()
    set(sources "")
    set(headers "")
    foreach(folder IN LISTS folders)
        file(GLOB folder_sources CONFIGURE_DEPENDS ${folder}/*.cpp)
        file(GLOB folder_headers CONFIGURE_DEPENDS ${folder}/*.h)
        list(APPEND sources ${folder_sources})
        list(APPEND headers ${folder_headers})
    endforeach()
    if(sources)
        add_library(${name} STATIC ${sources} ${headers})
        target_include_directories(${name} PUBLIC ${ARG_INCLUDE_ROOT})
        target_link_libraries(${name} PUBLIC ${ARG_DEPS})
        target_compile_options(${name} PRIVATE ${ZAR_WARNINGS})
    else()
        add_library(${name} INTERFACE ${headers})
        target_include_directories(${name} INTERFACE ${ARG_INCLUDE_ROOT})
        target_link_libraries(${name} INTERFACE ${ARG_DEPS})
    endif()
endfunction()

# zar_add_test_folder(<name> [DEPS <target>...])
# Builds every *Test.cpp of the calling folder into one GoogleTest executable registered with CTest.
function(zar_add_test_folder name)
    cmake_parse_arguments(ARG "" "" "DEPS" ${ARGN})
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
    if(NOT sources)
        return()
    endif()
    add_executable(${name} ${sources})
    target_link_libraries(${name} PRIVATE ${ARG_DEPS} zar_test_support GTest::gtest GTest::gmock GTest::gtest_main)
    target_compile_options(${name} PRIVATE ${ZAR_WARNINGS})
    target_compile_definitions(${name} PRIVATE
        PACKAGER_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
        PACKAGER_BINARY_DIR="${PROJECT_BINARY_DIR}")
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST WORKING_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR})
endfunction()
