// The receiver's side of the measured calls: a process of its own on the session bus that answers at once.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>

#include "Benchmarks/Count.h"
#include "gen/dbus/channelcache-generated.h"

namespace Benchmarks {

inline constexpr char kApiName[] = "org.vantrel.hbbtv.IDAEBrowserAPI";
inline constexpr char kCacheName[] = "org.vantrel.hbbtv.IJSChannelCache";
inline constexpr uint32_t kKeyMask = 0x1f;
// Channels 1 to this one are in its list.
inline const uint32_t kChannels = Count(1000);
// The job of a subscription to the stream event kStreamEvent; to the same with a number behind it, so much
// more.
inline constexpr uint32_t kStreamEventJob = 1;
inline constexpr char kStreamEvent[] = "tick";

// The seventeen values that the channel cache sends for a channel.
struct ChannelValues {
    explicit ChannelValues(uint32_t id);

    std::string name;
    std::string longName;
    std::string description;
    uint32_t idType;
    uint32_t nid;
    uint32_t onid;
    uint32_t tsid;
    uint32_t sid;
    bool radio;
    std::string ccid;
    bool authorised;
    bool hidden;
    bool locked;
    bool manualBlock;
    uint32_t maxBitRate;
    std::string ipBroadcastId;
    uint32_t majorChannel;
};

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

// The bare generated call for all that the cache knows of a channel. False when it does not know it.
[[nodiscard]] bool AskForChannel(IJSChannelCache* cache, uint32_t id);

// The main function of a program whose benchmarks call the middleware.
[[nodiscard]] int RunAgainstMiddleware(int argc, char** argv);

}  // namespace Benchmarks
