# Debian's s390x (64-bit, big-endian): scripts/cross s390x.
set(PACKAGER_DEBIAN_ARCHITECTURE s390x)
set(CMAKE_SYSTEM_PROCESSOR s390x)
set(zar_cross_triplet s390x-linux-gnu)
set(zar_cross_emulator qemu-s390x-static)
include(${CMAKE_CURRENT_LIST_DIR}/DebianMultiarch.cmake)
