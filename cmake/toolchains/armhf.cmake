# Debian's armhf, built with crossbuild-essential-armhf and the :armhf libraries of dpkg's multiarch
# (scripts/cross armhf). Programs built here run under qemu-user: the tests start them through the
# emulator, so the build machine needs no binfmt handler.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)
# The architecture of the Debian package (scripts/package --arch armhf).
set(PACKAGER_DEBIAN_ARCHITECTURE armhf)
set(CMAKE_C_COMPILER arm-linux-gnueabihf-gcc)
set(CMAKE_CXX_COMPILER arm-linux-gnueabihf-g++)
set(CMAKE_LIBRARY_ARCHITECTURE arm-linux-gnueabihf)
# GCC notes that the passing of some structures changed in GCC 7.1; nothing here mixes old objects.
set(CMAKE_CXX_FLAGS_INIT -Wno-psabi)
set(PKG_CONFIG_EXECUTABLE arm-linux-gnueabihf-pkg-config CACHE FILEPATH "")
# The multiarch libraries lie in the build machine's own /usr, beside its native ones; the target's
# dynamic loader is at its multiarch place too, so the emulator needs no -L.
# A -DCMAKE_CROSSCOMPILING_EMULATOR given on the command line wins, even an empty one.
if(NOT DEFINED CMAKE_CROSSCOMPILING_EMULATOR)
    set(CMAKE_CROSSCOMPILING_EMULATOR qemu-arm-static)
endif()
