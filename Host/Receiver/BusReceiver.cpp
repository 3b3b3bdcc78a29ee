#include "Host/Receiver/BusReceiver.h"

#include <nlohmann/json.hpp>

#include "Host/Inc/ReceiverNames.h"
#include "Host/Receiver/Media/ChildMediaPlayer.h"
#include "Host/Receiver/World/ChosenMediaPlayer.h"

namespace Receiver {

namespace {

// Replies and flags of the bus daemon's RequestName.
constexpr std::uint32_t kDoNotQueue = 4;
constexpr std::uint32_t kPrimaryOwner = 1;

}  // namespace

BusReceiver::BusReceiver(GDBusConnection* connection, const nlohmann::json& scenario,
                         const std::string& folder, const std::string& pictures)
    : m_connection(connection),
      m_world(scenario, folder, m_timers, m_events, chosenPlayer(), pictures),
      m_dispatcher(m_timers),
      m_emitter(connection),
      m_desk{m_world, m_dispatcher, m_events, m_emitter},
      m_control(makeControl(m_desk)),
      m_watch(g_dbus_connection_signal_subscribe(
          connection, "org.freedesktop.DBus", "org.freedesktop.DBus", "NameOwnerChanged",
          "/org/freedesktop/DBus", nullptr, G_DBUS_SIGNAL_FLAGS_NONE,
          Host::callback<&BusReceiver::onOwnerChanged>, this, nullptr)) {
    m_services.push_back(makeDaeBrowserApi(m_world, m_dispatcher));
    m_services.push_back(makeDsmcc(m_world, m_dispatcher));
    m_services.push_back(makeBroadcastPlayer(m_world, m_dispatcher));
    m_services.push_back(makeAvEventHandler(m_world, m_dispatcher));
    m_services.push_back(makeChannelCache(m_world, m_dispatcher));
    m_services.push_back(makeMetadataSearch(m_world, m_dispatcher));
    m_events.announceOn(m_services[0].get(), m_services[1].get(), m_control.get());
    m_dispatcher.onRecorded([this](const Call& call) { m_events.callRecorded(call); });
    for (const auto& service : m_services)
        m_emitter.addInterface(*g_dbus_interface_skeleton_get_info(service.get()));
}

MediaPlayerFactory BusReceiver::chosenPlayer() {
    return [this](MediaListener& listener, PictureSink& picture) -> std::unique_ptr<MediaPlayer> {
        const auto makeReal = [this](MediaListener& ears,
                                     PictureSink& screen) -> std::unique_ptr<MediaPlayer> {
            return std::make_unique<ChildMediaPlayer>(m_world.scenario(), m_timers, m_children, ears, screen);
        };
        return std::make_unique<ChosenMediaPlayer>(m_world.scenario(), m_timers, makeReal, listener, picture);
    };
}

// A page whose process ends, with its view or in a crash, says nothing any more, and what it held must not
// stay. This comes behind the last of its calls.
void BusReceiver::onOwnerChanged(GDBusConnection*, const char*, const char*, const char*, const char*,
                                 GVariant* change) {
    const char* name = nullptr;
    const char* owner = nullptr;
    g_variant_get(change, "(&s&s&s)", &name, nullptr, &owner);
    if (g_dbus_is_unique_name(name) == FALSE || *owner != 0)
        return;
    m_dispatcher.forget(name);
    m_world.forget(name);
}

BusReceiver::~BusReceiver() {
    g_dbus_connection_signal_unsubscribe(m_connection, m_watch);
    for (const auto& service : m_services)
        g_dbus_interface_skeleton_unexport(service.get());
    g_dbus_interface_skeleton_unexport(m_control.get());
}

bool BusReceiver::start(std::string& problem) {
    // Objects first: whoever sees a name finds it answering.
    Host::GErrorSlot error;
    bool exported = g_dbus_interface_skeleton_export(m_control.get(), m_connection, Names::ControlPath,
                                                     error.out()) != FALSE;
    for (const auto& service : m_services)
        exported = exported && g_dbus_interface_skeleton_export(service.get(), m_connection,
                                                                Names::ObjectPath, error.out()) != FALSE;
    if (!exported) {
        problem = std::string("cannot export the interfaces: ") + error.message();
        return false;
    }
    for (const auto& service : m_services) {
        if (!own(g_dbus_interface_skeleton_get_info(service.get())->name, problem))
            return false;
    }
    return own(Names::Control, problem);
}

bool BusReceiver::own(const std::string& name, std::string& problem) {
    Host::GErrorSlot error;
    const Host::GVariantHandle reply(g_dbus_connection_call_sync(
        m_connection, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
        g_variant_new("(su)", name.c_str(), kDoNotQueue), G_VARIANT_TYPE("(u)"), G_DBUS_CALL_FLAGS_NONE, -1,
        nullptr, error.out()));
    if (!reply) {
        problem = "cannot own the name " + name + ": " + error.message();
        return false;
    }
    std::uint32_t answer = 0;
    g_variant_get(reply.get(), "(u)", &answer);
    if (answer == kPrimaryOwner)
        return true;
    problem = "the name " + name + " already has an owner: another receiver is running on this bus";
    return false;
}

}  // namespace Receiver
