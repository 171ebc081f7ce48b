# What every cross toolchain file here shares: a Debian architecture built with its
# crossbuild-essential compilers and the target's libraries of dpkg's multiarch (scripts/cross ARCH).
# The including file sets PACKAGER_DEBIAN_ARCHITECTURE (the Debian package's architecture, for
# scripts/package --arch), CMAKE_SYSTEM_PROCESSOR, zar_cross_triplet (the GNU triplet that names the
# compilers and the multiarch folders) and zar_cross_emulator (the qemu-user program).
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_C_COMPILER ${zar_cross_triplet}-gcc)
set(CMAKE_CXX_COMPILER ${zar_cross_triplet}-g++)
set(CMAKE_LIBRARY_ARCHITECTURE ${zar_cross_triplet})
set(PKG_CONFIG_EXECUTABLE ${zar_cross_triplet}-pkg-config CACHE FILEPATH "")
# Programs built here run under qemu-user: the tests start them through the emulator, so the build
# machine needs no binfmt handler. The multiarch libraries lie in the build machine's own /usr, beside
# its native ones, and the target's dynamic loader is at its multiarch place too, so the emulator
# needs no -L. A -DCMAKE_CROSSCOMPILING_EMULATOR given on the command line wins, even an empty one.
if(NOT DEFINED CMAKE_CROSSCOMPILING_EMULATOR)
    set(CMAKE_CROSSCOMPILING_EMULATOR ${zar_cross_emulator})
endif()
