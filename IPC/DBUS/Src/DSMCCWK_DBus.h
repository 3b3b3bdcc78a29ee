// Files of the object carousel: the client of org.vantrel.hbbtv.DSMCC.
#pragma once

#include "Platform/Inc/DsmccFileLoader.h"

// Connects to the service. Called once, when the bundle starts; responses arrive in the main context that is
// the thread's default now.
void InitDSMCCDBus();
