# Debian's arm64, built with crossbuild-essential-arm64 and the :arm64 libraries of dpkg's multiarch
# (scripts/cross arm64). Programs built here run under qemu-user: the tests start them through the
# emulator, so the build machine needs no binfmt handler.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
# The architecture of the Debian package (scripts/package --arch arm64).
set(PACKAGER_DEBIAN_ARCHITECTURE arm64)
set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
set(CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu)
set(PKG_CONFIG_EXECUTABLE aarch64-linux-gnu-pkg-config CACHE FILEPATH "")
# The multiarch libraries lie in the build machine's own /usr, beside its native ones; the target's
# dynamic loader is at its multiarch place too, so the emulator needs no -L.
# A -DCMAKE_CROSSCOMPILING_EMULATOR given on the command line wins, even an empty one.
if(NOT DEFINED CMAKE_CROSSCOMPILING_EMULATOR)
    set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64-static)
endif()
