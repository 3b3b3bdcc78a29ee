// Which client of the bus has set which player up. A page whose process ends, with its view or in a crash, says
// nothing any more; its players must not play on.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>

#include <gio/gio.h>

namespace Receiver {

class PlayingClients {
 public:
    using Release = std::function<void(std::uint32_t pluginId)>;

    PlayingClients(GDBusConnection* connection, Release release)
        : m_connection(connection), m_release(std::move(release)) {}
    PlayingClients(const PlayingClients&) = delete;
    PlayingClients& operator=(const PlayingClients&) = delete;
    ~PlayingClients();

    // The player is this client's from now on.
    void setUp(const std::string& client, std::uint32_t pluginId);

 private:
    void vanished(const std::string& client);

    GDBusConnection* m_connection;
    Release m_release;
    std::map<std::uint32_t, std::string> m_clients;
    std::map<std::string, unsigned> m_watches;
};

}  // namespace Receiver
