# Debian's armhf (32-bit ARM): scripts/cross armhf.
set(PACKAGER_DEBIAN_ARCHITECTURE armhf)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(zar_cross_triplet arm-linux-gnueabihf)
set(zar_cross_emulator qemu-arm-static)
# GCC notes that the passing of some structures changed in GCC 7.1; nothing here mixes old objects.
set(CMAKE_CXX_FLAGS_INIT -Wno-psabi)
include(${CMAKE_CURRENT_LIST_DIR}/DebianMultiarch.cmake)
