// The receiver's side of the measured calls: a process of its own on the session bus that answers at once.
// Its searches are complete as soon as they have been started.
#pragma once

#include <sys/types.h>

#include <cstdint>

#include "Benchmarks/Count.h"
#include "IPC/DBUS/Src/DBusCall.h"
#include "IPC/DBUS/Src/DBusUtils.h"
#include "IPC/DBUS/Src/GLibHandles.h"
#include "gen/dbus/channelcache-generated.h"

namespace Benchmarks {

inline constexpr char kApiName[] = "org.vantrel.hbbtv.IDAEBrowserAPI";
inline constexpr char kCacheName[] = "org.vantrel.hbbtv.IJSChannelCache";
inline constexpr char kSearchName[] = "org.vantrel.hbbtv.IMetaDataSearch";
inline constexpr uint32_t kKeyMask = 0x1f;
// Channels 1 to this one are in its list.
inline const uint32_t kChannels = Count(1000);
// The job of a subscription to the stream event kStreamEvent; to the same with a number behind it, so much
// more.
inline constexpr uint32_t kStreamEventJob = 1;
inline constexpr char kStreamEvent[] = "tick";
// A few programmes have it in their names; they are on different channels.
inline constexpr char kTitle[] = "harbour";

// What the channel cache sends for a channel, seventeen values and whether it knows the channel, with a
// floating reference.
[[nodiscard]] GVariant* ChannelInfo(uint32_t id);

// Make it before anything else: a process that already has GLib's threads must not fork and go on.
class Middleware {
 public:
    Middleware();
    Middleware(const Middleware&) = delete;
    Middleware& operator=(const Middleware&) = delete;
    ~Middleware();

    // Whether it owns its names. What went wrong is on the standard error stream.
    [[nodiscard]] bool Serves() const { return m_serves; }

 private:
    pid_t m_process = -1;
    bool m_serves = false;
};

// For bare generated calls.
template <typename Proxy>
[[nodiscard]] GObjectPtr<Proxy> NewProxy(GeneratedMaker<Proxy> make, const char* name) {
    return GObjectPtr<Proxy>(
        make(GetDBus().get(), G_DBUS_PROXY_FLAGS_NONE, name, kObjectPath, nullptr, nullptr));
}

// The bare generated call for all that the cache knows of a channel. False when it does not know it.
[[nodiscard]] bool AskForChannel(IJSChannelCache* cache, uint32_t id);

// The main function of a program whose benchmarks call the middleware.
[[nodiscard]] int RunAgainstMiddleware(int argc, char** argv);

}  // namespace Benchmarks
