#include "Host/WebProcess/CarouselLoader.h"

#include <thread>
#include <utility>

#include "Host/Inc/ShellChannel.h"

namespace WebProcess {

using namespace Host;

namespace {

using ShellChannel::FileOutcome;

constexpr char kServiceInterface[] = "org.vantrel.hbbtv.DSMCC";
constexpr char kFileResponse[] = "FileResponse";
constexpr char kFileResponseType[] = "(usayub)";

// The bundle's callback comes without data of its own.
CarouselLoader* s_loader = nullptr;

void answer(GDBusMethodInvocation* invocation, FileOutcome outcome, const std::uint8_t* bytes = nullptr,
            size_t count = 0) {
    g_dbus_method_invocation_return_value(
        invocation, g_variant_new("(y@ay)", static_cast<guchar>(outcome),
                                  g_variant_new_fixed_array(G_VARIANT_TYPE_BYTE, bytes, count, 1)));
}

class DefaultContext : Pinned {
 public:
    explicit DefaultContext(GMainContext* context) : m_context(context) {
        g_main_context_push_thread_default(context);
    }
    ~DefaultContext() { g_main_context_pop_thread_default(m_context); }

 private:
    GMainContext* m_context;
};

}  // namespace

CarouselLoader::CarouselLoader() : m_context(g_main_context_new()) {}

void CarouselLoader::initialiseWith(const std::function<void()>& initialise) {
    const DefaultContext responses(m_context.get());
    initialise();
}

void CarouselLoader::serve(GDBusConnection* shell, Entry entry) {
    static const GDBusInterfaceVTable s_methods = {
        callback<&CarouselLoader::onMethodCall>, nullptr, nullptr, {}};
    GErrorSlot error;
    // The connection that the bundle uses too. Without one no response can come.
    m_bus.reset(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, error.out()));
    if (m_bus)
        g_dbus_connection_add_filter(m_bus.get(), callback<&CarouselLoader::onMessage>, this, nullptr);

    m_introspection.reset(g_dbus_node_info_new_for_xml(ShellChannel::kIntrospection, error.out()));
    s_loader = this;
    m_entry = entry;
    {
        const DefaultContext calls(m_context.get());
        if (g_dbus_connection_register_object(
                shell, ShellChannel::kPath,
                g_dbus_node_info_lookup_interface(m_introspection.get(), ShellChannel::kFilesInterface),
                &s_methods, this, nullptr, error.out()) == 0) {
            g_warning("no carousel for the shell: %s", error.message());
            m_entry = nullptr;
            return;
        }
    }
    // Runs until the process ends.
    std::thread([context = m_context.get()] {
        const DefaultContext own(context);
        const GMainLoopHandle loop(g_main_loop_new(context, FALSE));
        g_main_loop_run(loop.get());
    }).detach();
}

void CarouselLoader::onMethodCall(GDBusConnection*, const char*, const char*, const char*, const char* method,
                                  GVariant* parameters, GDBusMethodInvocation* invocation) {
    guint32 handle = 0;
    if (g_str_equal(method, ShellChannel::kReadFile)) {
        const char* url = nullptr;
        g_variant_get(parameters, "(u&s)", &handle, &url);
        readFile(handle, url, invocation);
        return;
    }
    g_variant_get(parameters, "(u)", &handle);
    abandonFile(handle);
    g_dbus_method_invocation_return_value(invocation, nullptr);
}

void CarouselLoader::readFile(std::uint32_t handle, const char* url, GDBusMethodInvocation* invocation) {
    {
        const std::lock_guard lock(m_mutex);
        const auto [entry, isNew] = m_requests.try_emplace(handle, Request{url, invocation, std::nullopt});
        if (!isNew) {
            answer(invocation, FileOutcome::Refused);
            return;
        }
    }
    if (m_entry(handle, url, onFile))
        return;
    if (const auto refused = take(handle, url))
        answer(refused->invocation, FileOutcome::Refused);
}

void CarouselLoader::abandonFile(std::uint32_t handle) {
    const std::lock_guard lock(m_mutex);
    const auto found = m_requests.find(handle);
    if (found == m_requests.end())
        return;
    // Nobody waits for it; it frees the invocation.
    answer(found->second.invocation, FileOutcome::Refused);
    m_requests.erase(found);
}

// On the bus's own thread, before anybody is told of the message.
GDBusMessage* CarouselLoader::onMessage(GDBusConnection*, GDBusMessage* message, gboolean incoming) {
    if (incoming && g_dbus_message_get_message_type(message) == G_DBUS_MESSAGE_TYPE_SIGNAL &&
        g_strcmp0(g_dbus_message_get_interface(message), kServiceInterface) == 0 &&
        g_strcmp0(g_dbus_message_get_member(message), kFileResponse) == 0) {
        GVariant* body = g_dbus_message_get_body(message);
        if (body && g_variant_is_of_type(body, G_VARIANT_TYPE(kFileResponseType)))
            noteSize(body);
    }
    return message;
}

void CarouselLoader::noteSize(GVariant* response) {
    guint32 handle = 0;
    const char* url = nullptr;
    GVariant* bytes = nullptr;
    g_variant_get(response, "(u&s@ayub)", &handle, &url, &bytes, nullptr, nullptr);
    const GVariantHandle owned(bytes);
    const std::lock_guard lock(m_mutex);
    const auto found = m_requests.find(handle);
    // The first response is the one that is taken.
    if (found != m_requests.end() && found->second.url == url && !found->second.carried)
        found->second.carried = g_variant_n_children(bytes);
}

std::optional<CarouselLoader::Request> CarouselLoader::take(std::uint32_t handle, const char* url) {
    const std::lock_guard lock(m_mutex);
    const auto found = m_requests.find(handle);
    if (found == m_requests.end() || found->second.url != url)
        return std::nullopt;
    std::optional<Request> request = std::move(found->second);
    m_requests.erase(found);
    return request;
}

// The service answers everybody who listens, so this hears of the files of other processes too.
bool CarouselLoader::onFile(std::uint32_t handle, const char* url, const std::uint8_t* data, long length,
                            bool status) {
    const auto request = s_loader->take(handle, url);
    if (!request)
        return false;
    if (!status)
        answer(request->invocation, FileOutcome::Missing);
    else if (length < 0 || static_cast<unsigned long>(length) > request->carried.value_or(0))
        answer(request->invocation, FileOutcome::Incomplete);
    else
        answer(request->invocation, FileOutcome::Read, data, static_cast<size_t>(length));
    return true;
}

}  // namespace WebProcess
