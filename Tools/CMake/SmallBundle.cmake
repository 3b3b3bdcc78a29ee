# What the bundle waits for is the bus, not the processor, so it is built for size. As a whole, because most of it are short
# functions that one other function calls.
if(NOT HBBTV_SMALL_BUNDLE OR HBBTV_SANITIZE OR CMAKE_BUILD_TYPE STREQUAL "Debug")
  return()
endif()

include(CheckIPOSupported)
check_ipo_supported(RESULT can_build_as_a_whole LANGUAGES C CXX)
foreach(part csp dbus_interfaces api wrapper ipc_dbus bindings bundle_runtime implementation platform_log_sink
             hbbtv-injected-bundle)
  target_compile_options(${part} PRIVATE -Os -ffunction-sections -fdata-sections)
  set_target_properties(${part} PROPERTIES INTERPROCEDURAL_OPTIMIZATION ${can_build_as_a_whole})
endforeach()
target_link_options(hbbtv-injected-bundle PRIVATE -Wl,--gc-sections)
