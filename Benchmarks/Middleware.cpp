#include "Benchmarks/Middleware.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <numeric>
#include <vector>

#include <benchmark/benchmark.h>

#include <gio/gio.h>

#include "Benchmarks/SearchMiddleware.h"
#include "IPC/DBUS/Src/DBusCall.h"
#include "IPC/DBUS/Src/DBusUtils.h"
#include "IPC/DBUS/Src/GLibHandles.h"
#include "gen/dbus/channelcache-generated.h"
#include "gen/dbus/daebrowserapi-generated.h"

namespace Benchmarks {
namespace {

gboolean AnswerKeyMask(IDAEBrowserAPI* skeleton, GDBusMethodInvocation* invocation, gpointer /*data*/) {
    idaebrowser_api_complete_get_key_mask(skeleton, invocation, kKeyMask);
    return TRUE;
}

gboolean AnswerChannelList(IDAEBrowserAPI* skeleton, GDBusMethodInvocation* invocation, gpointer /*data*/) {
    std::vector<guint32> ids(kChannels);
    std::iota(ids.begin(), ids.end(), 1);
    idaebrowser_api_complete_get_channel_list(
        skeleton, invocation,
        g_variant_new_fixed_array(G_VARIANT_TYPE_UINT32, ids.data(), ids.size(), sizeof(guint32)));
    return TRUE;
}

gboolean AnswerSubscribe(IDAEBrowserAPI* skeleton, GDBusMethodInvocation* invocation, const gchar* /*url*/,
                         const gchar* name, gpointer /*data*/) {
    const auto number = static_cast<guint>(std::strtoul(name + std::strlen(kStreamEvent), nullptr, 10));
    idaebrowser_api_complete_stream_event_subscribe(skeleton, invocation, kStreamEventJob + number);
    return TRUE;
}

gboolean AnswerUnsubscribe(IDAEBrowserAPI* skeleton, GDBusMethodInvocation* invocation, guint /*job*/,
                           gpointer /*data*/) {
    idaebrowser_api_complete_stream_event_unsubscribe(skeleton, invocation, TRUE);
    return TRUE;
}

gboolean AnswerRetain(IJSChannelCache* skeleton, GDBusMethodInvocation* invocation, guint id,
                      gpointer /*data*/) {
    ijschannel_cache_complete_retain(skeleton, invocation, id >= 1 && id <= kChannels);
    return TRUE;
}

gboolean AnswerRelease(IJSChannelCache* skeleton, GDBusMethodInvocation* invocation, guint /*id*/,
                       gpointer /*data*/) {
    ijschannel_cache_complete_release(skeleton, invocation);
    return TRUE;
}

gboolean AnswerChannelInfo(IJSChannelCache* skeleton, GDBusMethodInvocation* invocation, guint id,
                           gpointer /*data*/) {
    const ChannelValues channel(id);
    ijschannel_cache_complete_get_channel_info(
        skeleton, invocation, channel.name.c_str(), channel.longName.c_str(), channel.description.c_str(),
        channel.idType, channel.nid, channel.onid, channel.tsid, channel.sid, channel.radio,
        channel.ccid.c_str(), channel.authorised, channel.hidden, channel.locked, channel.manualBlock,
        channel.maxBitRate, channel.ipBroadcastId.c_str(), channel.majorChannel, id >= 1 && id <= kChannels);
    return TRUE;
}

constexpr std::array kNames{kApiName, kCacheName, kSearchName};

void Say(GDBusConnection* /*connection*/, const gchar* /*name*/, gpointer descriptor) {
    if (write(GPOINTER_TO_INT(descriptor), "", 1) != 1)
        _exit(1);
}

void GiveUp(GDBusConnection* /*connection*/, const gchar* /*name*/, gpointer /*descriptor*/) {
    _exit(1);
}

// Writes a byte to `ready` for each name once it is owned, and serves until it is killed.
[[noreturn]] void Serve(int ready) {
    GMainLoop* loop = g_main_loop_new(nullptr, FALSE);
    IDAEBrowserAPI* api = idaebrowser_api_skeleton_new();
    g_signal_connect(api, "handle-get-key-mask", G_CALLBACK(&AnswerKeyMask), nullptr);
    g_signal_connect(api, "handle-get-channel-list", G_CALLBACK(&AnswerChannelList), nullptr);
    g_signal_connect(api, "handle-stream-event-subscribe", G_CALLBACK(&AnswerSubscribe), nullptr);
    g_signal_connect(api, "handle-stream-event-unsubscribe", G_CALLBACK(&AnswerUnsubscribe), nullptr);
    IJSChannelCache* cache = ijschannel_cache_skeleton_new();
    g_signal_connect(cache, "handle-retain", G_CALLBACK(&AnswerRetain), nullptr);
    g_signal_connect(cache, "handle-release", G_CALLBACK(&AnswerRelease), nullptr);
    g_signal_connect(cache, "handle-get-channel-info", G_CALLBACK(&AnswerChannelInfo), nullptr);
    const GObjectPtr<GDBusConnection> bus = GetDBus();
    if (!bus ||
        !g_dbus_interface_skeleton_export(G_DBUS_INTERFACE_SKELETON(api), bus.get(), kObjectPath, nullptr) ||
        !g_dbus_interface_skeleton_export(G_DBUS_INTERFACE_SKELETON(cache), bus.get(), kObjectPath,
                                          nullptr) ||
        !ExportSearch(bus.get()))
        _exit(1);
    for (const char* name : kNames)
        g_bus_own_name_on_connection(bus.get(), name, G_BUS_NAME_OWNER_FLAGS_NONE, &Say, &GiveUp,
                                     GINT_TO_POINTER(ready), nullptr);
    g_main_loop_run(loop);
    _exit(0);
}

}  // namespace

ChannelValues::ChannelValues(uint32_t id)
    : name("Channel " + std::to_string(id)),
      longName("Television channel number " + std::to_string(id)),
      description("What channel " + std::to_string(id) + " is about"),
      idType(12),
      nid(id % 7 + 1),
      onid(id % 7 + 1),
      tsid(id / 10 + 1),
      sid(id),
      radio(id % 5 == 0),
      ccid("ccid:" + std::to_string(id) + ".0"),
      authorised(true),
      hidden(false),
      locked(false),
      manualBlock(false),
      maxBitRate(0xFFFFFFFF),
      majorChannel(id) {}

Middleware::Middleware() {
    int ready[2];
    if (pipe(ready) != 0)
        return;
    m_process = fork();
    if (m_process == 0) {
        close(ready[0]);
        Serve(ready[1]);
    }
    close(ready[1]);
    char byte = 0;
    m_serves = m_process > 0;
    for (size_t i = 0; m_serves && i < kNames.size(); ++i)
        m_serves = read(ready[0], &byte, 1) == 1;
    close(ready[0]);
    if (!m_serves)
        std::fputs("No session bus, or one of the receiver's names is taken\n", stderr);
}

Middleware::~Middleware() {
    if (m_process > 0) {
        kill(m_process, SIGTERM);
        waitpid(m_process, nullptr, 0);
    }
}

bool AskForChannel(IJSChannelCache* cache, uint32_t id) {
    GCharPtr name, longName, description, ccid, ipBroadcastId;
    guint idType = 0, nid = 0, onid = 0, tsid = 0, sid = 0, maxBitRate = 0, majorChannel = 0;
    gboolean radio = FALSE, authorised = FALSE, hidden = FALSE, locked = FALSE, manualBlock = FALSE,
             known = FALSE;
    return ijschannel_cache_call_get_channel_info_sync(
               cache, id, OutPointer(name), OutPointer(longName), OutPointer(description), &idType, &nid,
               &onid, &tsid, &sid, &radio, OutPointer(ccid), &authorised, &hidden, &locked, &manualBlock,
               &maxBitRate, OutPointer(ipBroadcastId), &majorChannel, &known, nullptr, nullptr) &&
           known;
}

int RunAgainstMiddleware(int argc, char** argv) {
    const Middleware middleware;
    if (!middleware.Serves())
        return 1;
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}

}  // namespace Benchmarks
