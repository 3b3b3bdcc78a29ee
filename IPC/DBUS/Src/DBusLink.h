// A service of the receiver as calls reach it: the connection, the proxy that stands for the service's name,
// and who owns that name. The service may come, go and come back, the bus may close the connection, the
// receiver may be silent; a link outlives all of it.
#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "IPC/DBUS/Src/GLibHandles.h"

inline constexpr char kObjectPath[] = "/org/vantrel/hbbtv";
// No page and no receiver needs a longer one, and a process that sends 128 MiB loses its connection.
inline constexpr size_t kLongestText = 1024 * 1024;

// What comes is of the types that the interface says; a signal that the interface lacks may be of any.
using SignalFunction = void (*)(const char* signal, GVariant* parameters, gpointer data);
// A signal's arguments for the log.
[[nodiscard]] std::string TextOf(GVariant* parameters, bool hasTypes = true);
// What an interface calls the texts of its arguments, for a recording.
[[nodiscard]] std::string Named(GDBusArgInfo* const* arguments, const std::vector<std::string>& texts);

class DBusLink {
 public:
    using ProxyMaker = std::function<GDBusProxy*(GDBusConnection*, GDBusProxyFlags, GError**)>;

    // The service's name has to stand for as long as the process does. Signals arrive in the main context
    // that is the thread's default now.
    DBusLink(const char* service, ProxyMaker make, SignalFunction onSignal, gpointer data);
    ~DBusLink();
    DBusLink(const DBusLink&) = delete;
    DBusLink& operator=(const DBusLink&) = delete;

    // Makes the proxy; the error says why it could not be made.
    void Attach(GDBusConnection* connection, GErrorPtr& error);
    [[nodiscard]] const void* Proxy() const { return m_proxy.get(); }
    // What the service's interface says; null before a proxy has been made.
    [[nodiscard]] const GDBusMethodInfo* MethodOf(const char* operation) const;

    // What to call now, with the patience that is left, or, for what nobody waits for, with all of it. A
    // closed connection is made anew. Null: there is no way to the service.
    [[nodiscard]] GObjectPtr<GDBusProxy> Reach(bool isWaitedFor);
    // What came of a call. True: it reached nobody, because the service's name has another owner than was
    // known; then it is to be made once more.
    [[nodiscard]] bool Learn(const GError* error);

    // Changes when the service goes, whether or not another one comes. What the receiver kept for us in one
    // life means nothing, or something else, in the next.
    [[nodiscard]] uint64_t Life() const;
    // Called whenever a life has ended.
    void OnEnd(std::function<void()> action) { m_onEnd = std::move(action); }

    // Whether the error is the service's own answer, rather than a lack of one.
    [[nodiscard]] static bool IsAnswer(const GError* error);

 private:
    static void OnSignal(GDBusConnection*, const gchar*, const gchar*, const gchar*, const gchar* signal,
                         GVariant* parameters, gpointer self);
    static void OnOwnerNotified(GDBusProxy* proxy, GParamSpec*, gpointer self);

    [[nodiscard]] bool IsConnected() const;
    void Reconnect();
    void Detach();
    void AskForOwner();
    void SetOwner(const char* owner);

    const char* const m_service;
    const ProxyMaker m_make;
    const SignalFunction m_onSignal;
    const gpointer m_data;
    GMainContext* const m_context;
    std::function<void()> m_onEnd;

    // Calls may come from another thread than the signals' one. Not held while a call is under way.
    mutable std::recursive_mutex m_mutex;
    GObjectPtr<GDBusProxy> m_proxy;
    guint m_subscription = 0;
    gulong m_ownerHandler = 0;
    // A proxy learns of its name's owner from the main loop, which does not run while a page does. When it is
    // known to be behind, calls take this one, until it has caught up.
    GObjectPtr<GDBusProxy> m_ahead;
    std::string m_owner;
    uint64_t m_life = 0;
};
