# 64-bit ARM (ARMv8), on Debian 12.
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(debian_architecture arm64)
set(triplet aarch64-linux-gnu)
set(emulator qemu-aarch64)
include(${CMAKE_CURRENT_LIST_DIR}/Debian.cmake)
