// Files of the object carousel: the client of org.vantrel.hbbtv.DSMCC.
#pragma once

#include <cstdint>

// Connects to the service. Called once, when the bundle starts; responses arrive in the main context that is
// the thread's default now.
void InitDSMCCDBus();

extern "C" {

// Receives one response. The bytes end with the call. The length is what the service states, which may be
// more than it sent: bound what is read by what is known of the request.
using DsmccFileCallback = bool (*)(uint32_t handle, const char* url, const uint8_t* data, long length,
                                   bool status);

// The URL loader's entry: asks for a file, whose bytes come later with the same handle. The first callback
// ever given receives all responses. False when the request could not be made or was refused.
__attribute__((visibility("default"))) bool s_soupDsmccFileRequest(uint32_t handle, const char* url,
                                                                   DsmccFileCallback callback);
}
