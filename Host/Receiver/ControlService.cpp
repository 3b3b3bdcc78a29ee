#include "Host/Receiver/ControlService.h"

#include <malloc.h>

#include <tuple>

#include <gio/gunixfdlist.h>

#include <nlohmann/json.hpp>

#include "Host/Receiver/PlaneNames.h"
#include "Host/Receiver/ReceiverControl-generated.h"
#include "Host/Receiver/SkeletonGlue.h"
#include "Host/Receiver/World/JsonReader.h"
#include "Host/Receiver/World/KeyCodes.h"

namespace Receiver {

namespace {

// In OpenPicture; no player has it.
constexpr std::uint32_t kRunningChannelId = 0;

void registerView(ControlDesk& desk, std::int32_t viewId, const char* url) {
    desk.world.registerView(viewId, url, desk.asker);
}

void refuseUnknownView(bool known, std::int32_t viewId) {
    if (!known)
        throw ScenarioError("", "there is no view " + std::to_string(viewId));
}

void unregisterView(ControlDesk& desk, std::int32_t viewId) {
    refuseUnknownView(desk.world.unregisterView(viewId), viewId);
}

void applicationFailed(ControlDesk& desk, std::int32_t viewId) {
    refuseUnknownView(desk.world.applications().fail(viewId), viewId);
}

void pressKey(ControlDesk& desk, const char* key) {
    const auto code = keyCode(key);
    if (!code)
        throw ScenarioError("", std::string("there is no key \"") + key + "\"");
    desk.events.keyPressed(*code);
}

void setWorld(ControlDesk& desk, const char* pointer, const char* json) {
    desk.world.setValue(pointer, json);
}

std::string getWorld(ControlDesk& desk, const char* pointer) {
    return toText(desk.world.value(pointer));
}

void refuseUnknownMethod(bool known, const std::string& method) {
    if (!known)
        throw ScenarioError("", "there is no method \"" + method +
                                    "\"; methods are named like "
                                    "\"IDAEBrowserAPI.CreateApplication\"");
}

void delayMethod(ControlDesk& desk, const char* method, std::uint32_t milliseconds) {
    refuseUnknownMethod(desk.dispatcher.delay(method, milliseconds), method);
}

void failMethod(ControlDesk& desk, const char* method, const char* message) {
    refuseUnknownMethod(desk.dispatcher.fail(method, message), method);
}

void resetMethods(ControlDesk& desk) {
    desk.dispatcher.reset();
}

GVariant* calls(ControlDesk& desk) {
    GVariantBuilder builder;
    g_variant_builder_init(&builder, G_VARIANT_TYPE("a(sst)"));
    for (const auto& call : desk.dispatcher.log().calls())
        g_variant_builder_add(&builder, "(sst)", call.method.c_str(), call.arguments.c_str(),
                              guint64{call.milliseconds});
    return g_variant_builder_end(&builder);
}

// The argument arrives in its box, and in a second one from callers that wrap it themselves.
void emitSignal(ControlDesk& desk, const char* signal, GVariant* boxed) {
    Host::GVariantHandle arguments(g_variant_ref(boxed));
    while (g_variant_is_of_type(arguments.get(), G_VARIANT_TYPE_VARIANT) != FALSE)
        arguments.reset(g_variant_get_variant(arguments.get()));
    desk.emitter.emit(signal, arguments.get());
}

void triggerStreamEvent(ControlDesk& desk, const char* name, GVariant* data) {
    gsize size = 0;
    const auto* bytes =
        static_cast<const std::uint8_t*>(g_variant_get_fixed_array(data, &size, sizeof(std::uint8_t)));
    if (desk.world.triggerStreamEvent(name, {bytes, bytes + size}) == 0)
        throw ScenarioError("", std::string("no page listens to the stream event \"") + name + "\"");
}

GVariant* planes(ControlDesk& desk) {
    GVariantBuilder builder;
    g_variant_builder_init(&builder, G_VARIANT_TYPE("a(ssuuuuubsss)"));
    for (const auto& [player, content] : desk.world.plane().shown()) {
        const auto& window = content.window;
        g_variant_builder_add(&builder, "(ssuuuuubsss)", Names::of(player.kind), player.caller.c_str(),
                              player.pluginId, window.x, window.y, window.width, window.height,
                              window.fullScreen ? TRUE : FALSE, content.title.c_str(),
                              Names::of(content.picture), content.subtitles.c_str());
    }
    return g_variant_builder_end(&builder);
}

std::tuple<std::string, std::string> runningChannel(ControlDesk& desk) {
    const auto running = desk.world.runningChannel();
    return {running.name, Names::of(running.picture)};
}

const FrameStore* filmFrames(World& world, const CallerName& name, std::uint32_t pluginId) {
    auto* caller = world.find(name);
    const auto* session = caller == nullptr ? nullptr : caller->media().find(pluginId);
    return session == nullptr ? nullptr : &session->frames();
}

const FrameStore* liveFrames(World& world, const PlanePlayer& player) {
    const auto& shown = world.plane().shown();
    const auto found = shown.find(player);
    const auto picture = player.pluginId == kRunningChannelId ? world.runningChannel().picture
                         : found == shown.end()               ? PlanePicture::None
                                                              : found->second.picture;
    return picture == PlanePicture::Frames ? &world.live().frames() : nullptr;
}

Host::Descriptor framesOf(ControlDesk& desk, const std::string& kind, const CallerName& name,
                          std::uint32_t pluginId) {
    const auto known = Names::planeKind(kind);
    if (!known)
        throw ScenarioError("", "there is no kind of player \"" + kind + "\"");
    const auto* frames = *known == PlaneKind::Broadcast ? liveFrames(desk.world, {*known, name, pluginId})
                                                        : filmFrames(desk.world, name, pluginId);
    if (frames == nullptr || !frames->hasFrame())
        throw ScenarioError("", "there are no frames of the " + kind + " player " + std::to_string(pluginId) +
                                    " of \"" + name + "\"");
    return frames->share();
}

// The reply carries a descriptor beside the message, for which the common template has no room.
gboolean openPicture(ReceiverControl* skeleton, GDBusMethodInvocation* invocation, GUnixFDList*,
                     const char* kind, const char* caller, guint pluginId) {
    try {
        const auto file = framesOf(*static_cast<ControlDesk*>(ownerOf(skeleton)), kind, caller, pluginId);
        const Host::GObjectHandle<GUnixFDList> list(g_unix_fd_list_new());
        Host::GErrorSlot error;
        const auto index = g_unix_fd_list_append(list.get(), file.get(), error.out());
        if (index < 0)
            throw ScenarioError("", std::string("the frames cannot be shared: ") + error.message());
        receiver_control_complete_open_picture(skeleton, invocation, list.get(), g_variant_new_handle(index));
    } catch (const ScenarioError& refusal) {
        g_dbus_method_invocation_return_dbus_error(invocation, Names::RefusedError, refusal.what());
    }
    return TRUE;
}

void clearCalls(ControlDesk& desk) {
    desk.dispatcher.log().clear();
    // Whoever measures the receiver wants to see what it holds.
    malloc_trim(0);
}

void fill(gpointer raw, gpointer) {
    auto& table = *static_cast<ReceiverControlIface*>(raw);
    table.handle_register_view = answer<receiver_control_complete_register_view, &registerView>;
    table.handle_unregister_view = answer<receiver_control_complete_unregister_view, &unregisterView>;
    table.handle_application_failed =
        answer<receiver_control_complete_application_failed, &applicationFailed>;
    table.handle_press_key = answer<receiver_control_complete_press_key, &pressKey>;
    table.handle_set_world = answer<receiver_control_complete_set_world, &setWorld>;
    table.handle_get_world = answer<receiver_control_complete_get_world, &getWorld>;
    table.handle_emit_signal = answer<receiver_control_complete_emit_signal, &emitSignal>;
    table.handle_trigger_stream_event =
        answer<receiver_control_complete_trigger_stream_event, &triggerStreamEvent>;
    table.handle_get_planes = answer<receiver_control_complete_get_planes, &planes>;
    table.handle_get_running_channel = answer<receiver_control_complete_get_running_channel, &runningChannel>;
    table.handle_open_picture = openPicture;
    table.handle_delay_method = answer<receiver_control_complete_delay_method, &delayMethod>;
    table.handle_fail_method = answer<receiver_control_complete_fail_method, &failMethod>;
    table.handle_reset_methods = answer<receiver_control_complete_reset_methods, &resetMethods>;
    table.handle_get_calls = answer<receiver_control_complete_get_calls, &calls>;
    table.handle_clear_calls = answer<receiver_control_complete_clear_calls, &clearCalls>;
}

}  // namespace

Host::GObjectHandle<GDBusInterfaceSkeleton> makeControl(ControlDesk& desk) {
    return makeSkeleton({TYPE_RECEIVER_CONTROL_SKELETON, TYPE_RECEIVER_CONTROL, fill}, &desk, nullptr);
}

}  // namespace Receiver
