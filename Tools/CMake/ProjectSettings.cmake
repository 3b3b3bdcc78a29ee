# Language, warnings and sanitizers, kept on one interface target that every target of ours links.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

find_program(HBBTV_CCACHE ccache)
if(HBBTV_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_C_COMPILER_LAUNCHER ${HBBTV_CCACHE})
  set(CMAKE_CXX_COMPILER_LAUNCHER ${HBBTV_CCACHE})
endif()

# The same sources give the same files wherever they lie, and those do not tell where that was. Not for a debugger, which is
# to find them.
add_compile_options("$<$<NOT:$<CONFIG:Debug>>:-ffile-prefix-map=${CMAKE_SOURCE_DIR}=.;-ffile-prefix-map=${CMAKE_BINARY_DIR}=build>")

if(HBBTV_SANITIZE)
  set(sanitize_flags -fsanitize=${HBBTV_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_compile_options(${sanitize_flags})
  add_link_options(${sanitize_flags})
endif()

add_library(project_settings INTERFACE)
target_include_directories(project_settings INTERFACE ${CMAKE_SOURCE_DIR} ${CMAKE_BINARY_DIR})
# The one version: of programs, bundle, user agent and packages.
target_compile_definitions(project_settings INTERFACE HBBTV_VERSION="${PROJECT_VERSION}")
# Errors they are with the presets only: another compiler may see more. No variable-argument extensions beyond what C++20 has; -Wpedantic keeps it so.
target_compile_options(project_settings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wformat=2 -Wcast-align)
target_compile_definitions(project_settings INTERFACE
  GLIB_VERSION_MIN_REQUIRED=GLIB_VERSION_2_74 GLIB_VERSION_MAX_ALLOWED=GLIB_VERSION_2_74)
