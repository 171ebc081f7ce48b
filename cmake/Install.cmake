# Install rules: the two tools, the CMake module with a package configuration that points it at the
# installed tools, and a man page for each tool.
include(GNUInstallDirs)

install(TARGETS packager packinspect RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
# The Qt image loader's module, which the tools look for in <bindir>/../<libdir>/packager and in the
# same folder under the configured prefix.
install(TARGETS zar_qt_input LIBRARY DESTINATION ${ZAR_QT_MODULE_INSTALL_DIR})

# find_package(Packager) looks in <prefix>/share/cmake/Packager among other places.
set(PACKAGER_INSTALL_CMAKEDIR ${CMAKE_INSTALL_DATADIR}/cmake/Packager)
file(RELATIVE_PATH packager_config_to_bin "/${PACKAGER_INSTALL_CMAKEDIR}" "/${CMAKE_INSTALL_BINDIR}")
file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/install-config/PackagerConfig.cmake CONTENT [[
# Makes packager_add_pack() available with the tools installed beside this file.
set(PACKAGER_EXECUTABLE "${CMAKE_CURRENT_LIST_DIR}/@packager_config_to_bin@/packager" CACHE FILEPATH "The packager tool")
set(PACKINSPECT_EXECUTABLE "${CMAKE_CURRENT_LIST_DIR}/@packager_config_to_bin@/packinspect" CACHE FILEPATH "The packinspect tool")
include("${CMAKE_CURRENT_LIST_DIR}/Packager.cmake")
]] @ONLY)

# The tools are the same program whatever compiled the project that uses them, so any architecture
# may use this package: only the version is checked.
include(CMakePackageConfigHelpers)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/PackagerConfigVersion.cmake
    COMPATIBILITY SameMajorVersion ARCH_INDEPENDENT)

install(FILES ${PROJECT_SOURCE_DIR}/cmake/Packager.cmake ${PROJECT_BINARY_DIR}/install-config/PackagerConfig.cmake
              ${PROJECT_BINARY_DIR}/PackagerConfigVersion.cmake
        DESTINATION ${PACKAGER_INSTALL_CMAKEDIR})

# The same package for the build tree, so that a project can try the tools before they are installed:
# find_package(Packager) with Packager_DIR set to this build folder.
file(GENERATE OUTPUT ${PROJECT_BINARY_DIR}/PackagerConfig.cmake CONTENT "\
# Makes packager_add_pack() available with the tools of the build tree that holds this file.
set(PACKAGER_EXECUTABLE \"$<TARGET_FILE:packager>\" CACHE FILEPATH \"The packager tool\")
set(PACKINSPECT_EXECUTABLE \"$<TARGET_FILE:packinspect>\" CACHE FILEPATH \"The packinspect tool\")
include(\"${PROJECT_SOURCE_DIR}/cmake/Packager.cmake\")
")

# The man pages carry the project's version.
foreach(page packager packinspect)
    configure_file(${PROJECT_SOURCE_DIR}/docs/${page}.1.in ${PROJECT_BINARY_DIR}/docs/${page}.1 @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/docs/${page}.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
endforeach()
