#include "Host/Receiver/PlayingClients.h"

namespace Receiver {

PlayingClients::~PlayingClients() {
    for (const auto& [client, watch] : m_watches)
        g_bus_unwatch_name(watch);
}

void PlayingClients::setUp(const std::string& client, std::uint32_t pluginId) {
    m_clients[pluginId] = client;
    if (m_watches.contains(client))
        return;
    const auto gone = [](GDBusConnection*, const char* name, gpointer self) {
        static_cast<PlayingClients*>(self)->vanished(name);
    };
    m_watches[client] = g_bus_watch_name_on_connection(m_connection, client.c_str(), G_BUS_NAME_WATCHER_FLAGS_NONE,
                                                       nullptr, gone, this, nullptr);
}

void PlayingClients::vanished(const std::string& client) {
    const auto watch = m_watches.extract(client);
    std::erase_if(m_clients, [&](const auto& entry) {
        if (entry.second != client)
            return false;
        m_release(entry.first);
        return true;
    });
    if (!watch.empty())
        g_bus_unwatch_name(watch.mapped());
}

}  // namespace Receiver
