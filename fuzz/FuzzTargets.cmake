# The fuzz targets, one per entry point that takes outside bytes, with the libraries each exercises.
# Two builds share this list: fuzz/CMakeLists.txt links every target with libFuzzer (clang only),
# and the normal build (fuzz/replay/) links it with ReplayMain.cpp, with whichever compiler builds
# the rest, and runs it over its inputs as the test fuzz_replay_<name>. The including folder sets
# ZAR_FUZZ_REPLAY, and for the replay ZAR_FUZZ_SEEDS (the folder of the generated seed corpus, one
# sub-folder per target) and ZAR_FUZZ_INCLUDES.

set(ZAR_FUZZ_DIR ${CMAKE_CURRENT_LIST_DIR})

# zar_add_fuzz_target(<name> <source> DEPS <target>... [SOURCES <file>...] [PACKAGER_MAIN])
# PACKAGER_MAIN compiles the tool's own main in as PackagerMain, since libFuzzer or ReplayMain.cpp
# brings the program's main.
function(zar_add_fuzz_target name source)
    cmake_parse_arguments(ARG "PACKAGER_MAIN" "" "DEPS;SOURCES" ${ARGN})
    if(ZAR_FUZZ_REPLAY)
        set(target fuzz_replay_${name})
        add_executable(${target} ${ZAR_FUZZ_DIR}/${source} ${ZAR_FUZZ_DIR}/FuzzCheck.h ${ZAR_FUZZ_DIR}/ReplayMain.cpp
            ${ARG_SOURCES})
        target_compile_options(${target} PRIVATE ${ZAR_WARNINGS})
        target_include_directories(${target} SYSTEM PRIVATE ${ZAR_FUZZ_INCLUDES})
        # Every input fuzzing starts from, and every input that once broke the target.
        add_test(NAME ${target}
            COMMAND ${target} ${ZAR_FUZZ_SEEDS}/${name} ${ZAR_FUZZ_DIR}/regressions/${name})
        set_tests_properties(${target} PROPERTIES FIXTURES_REQUIRED fuzz_seed_corpus)
    else()
        set(target ${name})
        add_executable(${target} ${ZAR_FUZZ_DIR}/${source} ${ZAR_FUZZ_DIR}/FuzzCheck.h ${ARG_SOURCES})
        target_compile_options(${target} PRIVATE -Wall -Wextra)
        target_link_options(${target} PRIVATE -fsanitize=fuzzer,${ZAR_FUZZ_SANITIZERS})
    endif()
    target_link_libraries(${target} PRIVATE ${ARG_DEPS})
    target_include_directories(${target} PRIVATE ${ZAR_FUZZ_DIR})
    if(ARG_PACKAGER_MAIN)
        zar_add_packager_main(${target})
    endif()
endfunction()

zar_add_fuzz_target(bmp_input BmpInputFuzzer.cpp DEPS Zar::Image)
zar_add_fuzz_target(ascii_input AsciiInputFuzzer.cpp DEPS Zar::Image)
zar_add_fuzz_target(input_sequence_list InputSequenceListFuzzer.cpp DEPS Zar::Image)
zar_add_fuzz_target(paths PathFuzzer.cpp DEPS Zar::Image)
zar_add_fuzz_target(symbols SymbolFuzzer.cpp DEPS Zar::LtExceptions)
zar_add_fuzz_target(case_conversion CaseFuzzer.cpp DEPS Zar::LtCore)
# The commands writer's test of selected variants against Qt's answer, which it replaced: the one
# target, besides the tests, that links Qt.
find_package(Qt5 5.15 REQUIRED COMPONENTS Core)
zar_add_fuzz_target(selected_variant_name SelectedVariantNameFuzzer.cpp DEPS Zar::Packager Qt5::Core)
# packinspect import's decoding and conversion of designers' files, through Qt's image readers and SVG.
zar_add_fuzz_target(import ImportFuzzer.cpp DEPS Zar::Packinspect)

# The end-to-end target calls the tool's build driver.
zar_add_fuzz_target(build BuildFuzzer.cpp DEPS Zar::Packager Zar::TestSupport PACKAGER_MAIN)
