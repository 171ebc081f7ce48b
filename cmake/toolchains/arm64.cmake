# Debian's arm64 (64-bit ARM): scripts/cross arm64.
set(PACKAGER_DEBIAN_ARCHITECTURE arm64)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(zar_cross_triplet aarch64-linux-gnu)
set(zar_cross_emulator qemu-aarch64-static)
include(${CMAKE_CURRENT_LIST_DIR}/DebianMultiarch.cmake)
