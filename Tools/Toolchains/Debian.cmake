# What the toolchain files beside this one share: Debian's cross compiler, and a folder with the libraries and headers that
# Debian has for the target. Tools/Scripts/cross-build makes that folder; -DCMAKE_SYSROOT=<folder> names another one.
# The including file has set CMAKE_SYSTEM_PROCESSOR, debian_architecture, triplet and emulator.
set(CMAKE_SYSTEM_NAME Linux)
if(NOT CMAKE_SYSROOT)
  get_filename_component(CMAKE_SYSROOT ${CMAKE_CURRENT_LIST_DIR}/../../build/sysroot-${debian_architecture} ABSOLUTE)
endif()
if(NOT EXISTS ${CMAKE_SYSROOT})
  message(FATAL_ERROR "There is no ${CMAKE_SYSROOT}; run: Tools/Scripts/cross-build ${debian_architecture}")
endif()
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES CMAKE_SYSROOT)

set(CMAKE_C_COMPILER ${triplet}-gcc)
set(CMAKE_CXX_COMPILER ${triplet}-g++)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
foreach(kind LIBRARY INCLUDE PACKAGE)
  set(CMAKE_FIND_ROOT_PATH_MODE_${kind} ONLY)
endforeach()
set(ENV{PKG_CONFIG_SYSROOT_DIR} ${CMAKE_SYSROOT})
set(ENV{PKG_CONFIG_LIBDIR} ${CMAKE_SYSROOT}/usr/lib/${triplet}/pkgconfig:${CMAKE_SYSROOT}/usr/share/pkgconfig)

# Tests run here.
set(CMAKE_CROSSCOMPILING_EMULATOR ${emulator} -L ${CMAKE_SYSROOT})
