# Debian's s390x, built with crossbuild-essential-s390x and the :s390x libraries of dpkg's multiarch
# (scripts/cross s390x). Programs built here run under qemu-user: the tests start them through the
# emulator, so the build machine needs no binfmt handler.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR s390x)
# The architecture of the Debian package (scripts/package --arch s390x).
set(PACKAGER_DEBIAN_ARCHITECTURE s390x)
set(CMAKE_C_COMPILER s390x-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER s390x-linux-gnu-g++)
set(CMAKE_LIBRARY_ARCHITECTURE s390x-linux-gnu)
set(PKG_CONFIG_EXECUTABLE s390x-linux-gnu-pkg-config CACHE FILEPATH "")
# The multiarch libraries lie in the build machine's own /usr, beside its native ones; the target's
# dynamic loader is at its multiarch place too, so the emulator needs no -L.
# A -DCMAKE_CROSSCOMPILING_EMULATOR given on the command line wins, even an empty one.
if(NOT DEFINED CMAKE_CROSSCOMPILING_EMULATOR)
    set(CMAKE_CROSSCOMPILING_EMULATOR qemu-s390x-static)
endif()
