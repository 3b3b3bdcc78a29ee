// Files of the object carousel for the shell, through the bundle's entry. It works on a thread of its own,
// because a page's script may stand still until the file is there.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>

#include "Host/Inc/GCallbacks.h"
#include "Platform/Inc/DsmccFileLoader.h"

namespace WebProcess {

// One for each web process, kept until the process ends: the bundle never lets go of a callback.
class CarouselLoader : Host::Pinned {
 public:
    using Entry = decltype(&s_soupDsmccFileRequest);

    CarouselLoader();

    // Calls the function, which initialises the bundle, so that the bundle's responses arrive on our thread.
    void initialiseWith(const std::function<void()>& initialise);

    // Answers the shell from now on.
    void serve(GDBusConnection* shell, Entry entry);
    [[nodiscard]] bool serves() const { return m_entry != nullptr; }

 private:
    struct Request {
        std::string url;
        GDBusMethodInvocation* invocation;  // Owned; the answer consumes it.
        // The callback is only told what the response claims; this is what its message carries.
        std::optional<size_t> carried;
    };

    void onMethodCall(GDBusConnection*, const char*, const char*, const char*, const char* method,
                      GVariant* parameters, GDBusMethodInvocation* invocation);
    GDBusMessage* onMessage(GDBusConnection*, GDBusMessage* message, gboolean incoming);
    static bool onFile(std::uint32_t handle, const char* url, const std::uint8_t* data, long length,
                       bool status);

    void readFile(std::uint32_t handle, const char* url, GDBusMethodInvocation* invocation);
    void abandonFile(std::uint32_t handle);
    void noteSize(GVariant* response);
    // The request that waits for this response, which it does no longer.
    [[nodiscard]] std::optional<Request> take(std::uint32_t handle, const char* url);

    Entry m_entry = nullptr;
    Host::GMainContextHandle m_context;
    Host::GNodeInfo m_introspection;
    Host::GObjectHandle<GDBusConnection> m_bus;
    std::mutex m_mutex;
    std::map<std::uint32_t, Request> m_requests;  // By handle; shared with the thread of the bus.
};

}  // namespace WebProcess
