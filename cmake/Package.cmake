# The Debian package of the install tree (scripts/package runs `cpack -G DEB`): the two tools, the Qt
# image loader's module, the man pages and the CMake package files, installed under /usr.
#
# Its Depends line is what dpkg-shlibdeps finds the installed programs and module linked against
# (Qt 5 Core, Gui and Svg and what they need; the JPEG and GIF readers packinspect import uses are
# plugins of libqt5gui5), plus the one thing no program links: the DejaVu fonts that
# packinspect's contact sheet draws its labels with. No build package is named.
set(CPACK_PACKAGE_NAME packager)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Resource pack builder for 4-bit OLED displays")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)

set(PACKAGER_DEB_MAINTAINER "packager developers <packager@example.invalid>"
    CACHE STRING "The Maintainer field of the Debian package")
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${PACKAGER_DEB_MAINTAINER}")
set(CPACK_DEBIAN_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
# A cross build's package is for the target's architecture (its toolchain file names it), not for the
# architecture of the machine that runs CPack.
if(PACKAGER_DEBIAN_ARCHITECTURE)
    set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE ${PACKAGER_DEBIAN_ARCHITECTURE})
endif()
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS fonts-dejavu-core)
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "packager turns folders of small monochrome and 16-level grey bitmaps into one
binary resource pack, oled.pack, for the 4-bit-per-pixel OLED display of a
remote controller, and writes beside it the C++ and Python sources through
which firmware and test scripts name those resources.

packinspect checks, lists and draws packs. The CMake package
(find_package(Packager)) adds packager_add_pack() to a firmware build.")

include(CPack)
