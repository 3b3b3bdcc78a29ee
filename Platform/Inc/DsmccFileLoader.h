// What the bundle offers the platform's URL loader: files of the object carousel. Found by name, like the
// bundle's entry.
#pragma once

#include <cstdint>

extern "C" {

// Receives one response, in the main context that was its thread's default when the bundle was initialised.
// The bytes end with the call. The length is what the service states, which may be more than it sent: bound
// what is read by what is known otherwise. The result is whether the response was wanted.
using DsmccFileCallback = bool (*)(uint32_t handle, const char* url, const uint8_t* data, long length,
                                   bool status);

// Asks for a file, whose bytes come later with the same handle; from any thread. Services answer all who
// listen, so handles must differ between the processes of one receiver. The first callback ever given
// receives all responses. False when the request could not be made or was refused.
__attribute__((visibility("default"))) bool s_soupDsmccFileRequest(uint32_t handle, const char* url,
                                                                   DsmccFileCallback callback);
}
