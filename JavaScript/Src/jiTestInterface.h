// Functions for test hosts. Nothing puts them on a window; a host that wants one calls its Register routine.
#pragma once

#include <JavaScriptCore/JavaScript.h>

namespace OipfJavaScript {

class jiTestInterface {
 public:
    jiTestInterface() = delete;

    static void RegisterAlert(JSContextRef context);
    static void RegisterForceGC(JSContextRef context);
    static void RegisterRegisterAllEmbeddedObjects(JSContextRef context);
};

}  // namespace OipfJavaScript
