#include "Host/WebProcess/PlaneNews.h"

#include <gio/gunixfdlist.h>

#include "Host/Inc/ReceiverNames.h"

namespace WebProcess {

using namespace Host;
using namespace Receiver::Names;

namespace {

constexpr char kBroadcastInterface[] = "org.vantrel.hbbtv.IBroadcastPlayer";
constexpr char kBroadbandInterface[] = "org.vantrel.hbbtv.IAVEventHandler";
constexpr char kBroadcast[] = "broadcast";
constexpr char kBroadband[] = "broadband";
constexpr int kLimitMs = 2000;

PlanePicture pictureOf(const char* name) {
    if (g_str_equal(name, "card"))
        return PlanePicture::Card;
    if (g_str_equal(name, "audio"))
        return PlanePicture::Audio;
    return g_str_equal(name, "frames") ? PlanePicture::Frames : PlanePicture::None;
}

// Of the running channel.
PlaneContent contentOf(GVariant* nameAndPicture) {
    const char* name = nullptr;
    const char* picture = nullptr;
    g_variant_get(nameAndPicture, "(&s&s)", &name, &picture);
    return {name, pictureOf(picture), {}};
}

struct OpenRequest {
    PlaneListener& listener;
    PlanePlayer player;
};

}  // namespace

void PlaneNews::listen() {
    GErrorSlot error;
    GObjectHandle<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, error.out()));
    if (!bus || bus == m_bus)
        return;
    if (m_bus)
        g_bus_unwatch_name(m_nameWatch);
    m_bus = std::move(bus);
    g_dbus_connection_set_exit_on_close(m_bus.get(), FALSE);
    g_dbus_connection_signal_subscribe(m_bus.get(), Control, Control, nullptr, ControlPath, nullptr,
                                       G_DBUS_SIGNAL_FLAGS_NONE, callback<&PlaneNews::onSignal>, this,
                                       nullptr);
    g_dbus_connection_add_filter(m_bus.get(), callback<&PlaneNews::onMessage>, this, nullptr);
    m_nameWatch = g_bus_watch_name_on_connection(m_bus.get(), Control, G_BUS_NAME_WATCHER_FLAGS_NONE,
                                                 callback<&PlaneNews::onReceiverAppeared>,
                                                 callback<&PlaneNews::onReceiverVanished>, this, nullptr);
}

void PlaneNews::onSignal(GDBusConnection* bus, const char*, const char*, const char*, const char* signal,
                         GVariant* parameters) {
    if (g_str_equal(signal, "RunningChannelChanged") &&
        g_variant_is_of_type(parameters, G_VARIANT_TYPE("(ss)"))) {
        m_listener.runningChannelChanged(contentOf(parameters));
        return;
    }
    if (!g_str_equal(signal, "PlaneChanged") ||
        !g_variant_is_of_type(parameters, G_VARIANT_TYPE("(ssubuuuubsss)")))
        return;
    const char* kind = nullptr;
    const char* caller = nullptr;
    const char* title = nullptr;
    const char* picture = nullptr;
    const char* subtitles = nullptr;
    gboolean visible = FALSE;
    PlanePlayer player;
    g_variant_get(parameters, "(&s&subuuuub&s&s&s)", &kind, &caller, &player.id, &visible, nullptr, nullptr,
                  nullptr, nullptr, nullptr, &title, &picture, &subtitles);
    if (!g_str_equal(caller, g_dbus_connection_get_unique_name(bus)))
        return;
    player.isBroadcast = g_str_equal(kind, kBroadcast);
    if (visible)
        m_listener.planeShown(player, {title, pictureOf(picture), subtitles});
    else
        m_listener.planeHidden(player);
}

void PlaneNews::onReceiverAppeared(GDBusConnection* bus, const char*, const char*) {
    g_dbus_connection_call(bus, Control, ControlPath, Control, "GetRunningChannel", nullptr,
                           G_VARIANT_TYPE("(ss)"), G_DBUS_CALL_FLAGS_NO_AUTO_START, kLimitMs, nullptr,
                           callback<&PlaneNews::onRunningChannel>, this);
}

void PlaneNews::onRunningChannel(GObject* bus, GAsyncResult* result) {
    GErrorSlot error;
    const GVariantHandle reply(g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, error.out()));
    if (reply)
        m_listener.runningChannelChanged(contentOf(reply.get()));
}

// On the bus's own thread; the call waits on the main thread until the receiver has answered it.
GDBusMessage* PlaneNews::onMessage(GDBusConnection*, GDBusMessage* message, gboolean incoming) {
    if (incoming || g_dbus_message_get_message_type(message) != G_DBUS_MESSAGE_TYPE_METHOD_CALL ||
        g_strcmp0(g_dbus_message_get_member(message), "UpdateLayout") != 0)
        return message;
    GVariant* body = g_dbus_message_get_body(message);
    const char* interface = g_dbus_message_get_interface(message);
    if (!body || !interface || !g_variant_is_of_type(body, G_VARIANT_TYPE("(uuuuub)")))
        return message;
    if (const bool isBroadcast = g_str_equal(interface, kBroadcastInterface);
        isBroadcast || g_str_equal(interface, kBroadbandInterface))
        noteLayout({isBroadcast, 0}, body);
    return message;
}

void PlaneNews::noteLayout(const PlanePlayer& ofThisKind, GVariant* body) {
    PlanePlayer player = ofThisKind;
    PlaneLayout layout;
    Rectangle& window = layout.window;
    gboolean fullScreen = FALSE;
    // The wire has no sign.
    g_variant_get(body, "(uuuuub)", &player.id, reinterpret_cast<guint32*>(&window.x),
                  reinterpret_cast<guint32*>(&window.y), reinterpret_cast<guint32*>(&window.width),
                  reinterpret_cast<guint32*>(&window.height), &fullScreen);
    layout.fullScreen = fullScreen;
    const std::lock_guard lock(m_mutex);
    if (m_layouts.empty())
        g_idle_add(callback<&PlaneNews::onLayoutsSent>, this);
    m_layouts.emplace_back(player, layout);
}

gboolean PlaneNews::onLayoutsSent() {
    m_listener.layoutsSent();
    return G_SOURCE_REMOVE;
}

std::vector<std::pair<PlanePlayer, PlaneLayout>> PlaneNews::takeLayouts() {
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_layouts, {});
}

void PlaneNews::openFrames(const PlanePlayer& player) {
    if (!m_bus)
        return;
    g_dbus_connection_call_with_unix_fd_list(
        m_bus.get(), Control, ControlPath, Control, "OpenPicture",
        g_variant_new("(ssu)", player.isBroadcast ? kBroadcast : kBroadband,
                      g_dbus_connection_get_unique_name(m_bus.get()), player.id),
        G_VARIANT_TYPE("(h)"), G_DBUS_CALL_FLAGS_NO_AUTO_START, kLimitMs, nullptr, nullptr, onFramesOpened,
        new OpenRequest{m_listener, player});
}

void PlaneNews::onFramesOpened(GObject* bus, GAsyncResult* result, gpointer data) {
    const std::unique_ptr<OpenRequest> request(static_cast<OpenRequest*>(data));
    GErrorSlot error;
    GUnixFDList* list = nullptr;
    const GVariantHandle reply(
        g_dbus_connection_call_with_unix_fd_list_finish(G_DBUS_CONNECTION(bus), &list, result, error.out()));
    const GObjectHandle<GUnixFDList> files(list);
    if (!reply || !files) {
        // It may have ended since.
        g_debug("no frames of player %u: %s", request->player.id, error.message());
        return;
    }
    gint32 index = 0;
    g_variant_get(reply.get(), "(h)", &index);
    auto frames = PictureView::open(Descriptor(g_unix_fd_list_get(files.get(), index, error.out())));
    if (!frames)
        g_warning("the frames of player %u are none", request->player.id);
    else
        request->listener.framesOpened(request->player, std::move(frames));
}

}  // namespace WebProcess
