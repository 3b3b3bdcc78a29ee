# 32-bit ARM with a floating-point unit (ARMv7), on Debian 12.
set(CMAKE_SYSTEM_PROCESSOR armv7l)
set(debian_architecture armhf)
set(triplet arm-linux-gnueabihf)
set(emulator qemu-arm)
# GCC else notes at every use of some templates that it passed them otherwise before its version 7.
set(CMAKE_CXX_FLAGS_INIT -Wno-psabi)
include(${CMAKE_CURRENT_LIST_DIR}/Debian.cmake)
