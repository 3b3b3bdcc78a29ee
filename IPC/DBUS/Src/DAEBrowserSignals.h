// The signals of org.vantrel.hbbtv.IDAEBrowserAPI, turned into events.
#pragma once

#include "IPC/DBUS/Src/GLibHandles.h"

class CDAEBrowserAPIWK;

// Hands the event of the signal to the client's subscribers. A signal of another name is only logged. The
// records that events point to live here and end with the delivery, however many subscribers there are.
void DispatchDAEBrowserSignal(CDAEBrowserAPIWK& client, const char* name, GVariant* parameters);
