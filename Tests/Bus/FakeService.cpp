#include "Tests/Bus/FakeService.h"

#include <chrono>
#include <cstdlib>
#include <stdexcept>
#include <utility>

#include "IPC/DBUS/Src/DBusCall.h"

namespace {

void Check(const GErrorPtr& error, const char* what) {
    if (error)
        throw std::runtime_error(std::string(what) + ": " + error->message);
}

GVariantPtr Parse(const std::string& type, const std::string& values) {
    GErrorPtr error;
    GVariantPtr value(g_variant_parse(type.empty() ? nullptr : G_VARIANT_TYPE(type.c_str()), values.c_str(),
                                      nullptr, nullptr, OutPointer(error)));
    Check(error, values.c_str());
    return value;
}

// The values with their types written into them.
std::string Annotated(const std::string& type, const std::string& values) {
    return GCharPtr(g_variant_print(Parse(type, values).get(), TRUE)).get();
}

}  // namespace

std::string TupleOf(GDBusArgInfo* const* arguments) {
    std::string type = "(";
    for (; arguments != nullptr && *arguments != nullptr; ++arguments)
        type += (*arguments)->signature;
    return type + ")";
}

std::string ZerosOf(GDBusArgInfo* const* arguments) {
    std::string text;
    size_t count = 0;
    for (; arguments != nullptr && arguments[count] != nullptr; ++count) {
        const char type = arguments[count]->signature[0];
        text += count > 0 ? ", " : "";
        text += type == 'b' ? "false" : type == 's' ? "''" : type == 'a' ? "[]" : "0";
    }
    return Annotated(TupleOf(arguments), "(" + text + (count == 1 ? ",)" : ")"));
}

FakeService::FakeService(const std::string& interface) : m_name("org.vantrel.hbbtv." + interface) {
    GCharPtr xml;
    GErrorPtr error;
    g_file_get_contents((HBBTV_DBUS_XML_DIR "/" + m_name + ".xml").c_str(), OutPointer(xml), nullptr,
                        OutPointer(error));
    Check(error, "reading the interface");
    m_node.reset(g_dbus_node_info_new_for_xml(xml.get(), OutPointer(error)));
    Check(error, "parsing the interface");
    m_info = g_dbus_node_info_lookup_interface(m_node.get(), m_name.c_str());
    Start();
}

FakeService::~FakeService() {
    if (m_thread.joinable())
        Stop();
}

void FakeService::Start() {
    GErrorPtr error;
    m_connection.reset(g_dbus_connection_new_for_address_sync(
        std::getenv("DBUS_SESSION_BUS_ADDRESS"),
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, OutPointer(error)));
    Check(error, "connecting");

    // Calls are answered in the context that is the thread's default when the object is registered.
    GMainContext* const context = g_main_context_new();
    m_loop.reset(g_main_loop_new(context, FALSE), g_main_loop_unref);
    g_main_context_push_thread_default(context);
    static const GDBusInterfaceVTable methods = {OnCall, nullptr, nullptr, {}};
    g_dbus_connection_register_object(m_connection.get(), kObjectPath,
                                      const_cast<GDBusInterfaceInfo*>(m_info), &methods, this, nullptr,
                                      OutPointer(error));
    g_main_context_pop_thread_default(context);
    Check(error, "exporting");
    m_thread = std::thread([loop = m_loop, context] {
        g_main_context_push_thread_default(context);
        g_main_loop_run(loop.get());
        g_main_context_pop_thread_default(context);
        g_main_context_unref(context);
    });

    const GVariantPtr reply(g_dbus_connection_call_sync(
        m_connection.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
        "RequestName", g_variant_new("(su)", m_name.c_str(), 0U), nullptr, G_DBUS_CALL_FLAGS_NONE, -1,
        nullptr, OutPointer(error)));
    Check(error, "owning the name");
}

void FakeService::Hang() {
    m_hung.lock();
    GSource* const block = g_idle_source_new();
    g_source_set_priority(block, G_PRIORITY_HIGH);
    g_source_set_callback(
        block,
        [](gpointer hold) -> gboolean {
            const std::lock_guard until(*static_cast<std::mutex*>(hold));
            return G_SOURCE_REMOVE;
        },
        &m_hold, nullptr);
    g_source_attach(block, g_main_loop_get_context(m_loop.get()));
    g_source_unref(block);
}

void FakeService::GoOn() {
    m_hung.unlock();
}

void FakeService::Stop() {
    if (m_hung)
        GoOn();
    g_dbus_connection_close_sync(m_connection.get(), nullptr, nullptr);
    g_main_context_invoke(
        g_main_loop_get_context(m_loop.get()),
        [](gpointer loop) -> gboolean {
            g_main_loop_quit(static_cast<GMainLoop*>(loop));
            return G_SOURCE_REMOVE;
        },
        m_loop.get());
    m_thread.join();
    m_connection.reset();
}

std::vector<std::string> FakeService::Methods() const {
    std::vector<std::string> names;
    for (GDBusMethodInfo* const* each = m_info->methods; each != nullptr && *each != nullptr; ++each)
        names.emplace_back((*each)->name);
    return names;
}

std::pair<std::vector<std::string>, std::vector<std::string>> FakeService::TypesOf(
    const std::string& method) const {
    const auto typesOf = [](GDBusArgInfo* const* arguments) {
        std::vector<std::string> types;
        for (; arguments != nullptr && *arguments != nullptr; ++arguments)
            types.emplace_back((*arguments)->signature);
        return types;
    };
    const GDBusMethodInfo* const info =
        g_dbus_interface_info_lookup_method(const_cast<GDBusInterfaceInfo*>(m_info), method.c_str());
    return {typesOf(info->in_args), typesOf(info->out_args)};
}

void FakeService::Reply(const std::string& method, const std::string& values) {
    const std::lock_guard guard(m_mutex);
    m_answers[method] = {.values = values};
}

void FakeService::ReplyOfAnyType(const std::string& method, const std::string& values) {
    const std::lock_guard guard(m_mutex);
    m_answers[method] = {.values = values, .ofAnyType = true};
}

void FakeService::Fail(const std::string& method, const std::string& message) {
    const std::lock_guard guard(m_mutex);
    m_answers[method].failure = message;
}

void FakeService::Delay(const std::string& method, unsigned milliseconds) {
    const std::lock_guard guard(m_mutex);
    m_answers[method].delay = milliseconds;
}

void FakeService::Emit(const std::string& signal, const std::string& values) {
    const GDBusSignalInfo* info =
        g_dbus_interface_info_lookup_signal(const_cast<GDBusInterfaceInfo*>(m_info), signal.c_str());
    // The type is written before the values of what has one.
    EmitAnything(signal, info != nullptr ? Annotated(TupleOf(info->args), values) : values);
}

void FakeService::EmitAnything(const std::string& signal, const std::string& values) {
    const GVariantPtr parameters = Parse("", values);
    GErrorPtr error;
    g_dbus_connection_emit_signal(m_connection.get(), nullptr, kObjectPath, m_name.c_str(), signal.c_str(),
                                  parameters.get(), OutPointer(error));
    Check(error, "emitting");
}

std::vector<std::pair<std::string, std::string>> FakeService::Signals() const {
    std::vector<std::pair<std::string, std::string>> signals;
    for (GDBusSignalInfo* const* each = m_info->signals; each != nullptr && *each != nullptr; ++each)
        signals.emplace_back((*each)->name, ZerosOf((*each)->args));
    return signals;
}

std::vector<std::string> FakeService::TakeCalls(size_t atLeast) {
    std::unique_lock guard(m_mutex);
    m_called.wait_for(guard, std::chrono::seconds(10), [&] { return m_calls.size() >= atLeast; });
    return std::exchange(m_calls, {});
}

void FakeService::OnCall(GDBusConnection* /*connection*/, const gchar* /*sender*/, const gchar* /*path*/,
                         const gchar* /*interface*/, const gchar* method, GVariant* parameters,
                         GDBusMethodInvocation* invocation, gpointer data) {
    auto* const self = static_cast<FakeService*>(data);
    Answer answer;
    {
        const std::lock_guard guard(self->m_mutex);
        const GCharPtr text(g_variant_print(parameters, FALSE));
        self->m_calls.push_back(std::string(method) + " " + text.get());
        // Who has seen the call may say what the next one is answered.
        answer = self->m_answers[method];
        self->m_called.notify_all();
    }
    if (answer.delay == 0)
        return AnswerCall(invocation, answer);
    using Pending = std::pair<GObjectPtr<GDBusMethodInvocation>, Answer>;
    auto* const later = g_timeout_source_new(answer.delay);
    g_source_set_callback(
        later,
        [](gpointer call) -> gboolean {
            auto& [answered, with] = *static_cast<Pending*>(call);
            AnswerCall(answered.release(), with);
            return G_SOURCE_REMOVE;
        },
        new Pending(invocation, answer), [](gpointer call) { delete static_cast<Pending*>(call); });
    g_source_attach(later, g_main_context_get_thread_default());
    g_source_unref(later);
}

void FakeService::AnswerCall(GDBusMethodInvocation* invocation, const Answer& answer) {
    const GDBusMethodInfo* method = g_dbus_method_invocation_get_method_info(invocation);
    if (!answer.failure.empty()) {
        g_dbus_method_invocation_return_error_literal(invocation, G_DBUS_ERROR, G_DBUS_ERROR_FAILED,
                                                      answer.failure.c_str());
        return;
    }
    if (answer.ofAnyType) {
        // The connection sends what the invocation would refuse, so the invocation is ours to end.
        const GObjectPtr<GDBusMethodInvocation> ended(invocation);
        const GObjectPtr<GDBusMessage> reply(
            g_dbus_message_new_method_reply(g_dbus_method_invocation_get_message(invocation)));
        g_dbus_message_set_body(reply.get(), Parse("", answer.values).get());
        g_dbus_connection_send_message(g_dbus_method_invocation_get_connection(invocation), reply.get(),
                                       G_DBUS_SEND_MESSAGE_FLAGS_NONE, nullptr, nullptr);
        return;
    }
    const GVariantPtr reply =
        Parse(TupleOf(method->out_args), answer.values.empty() ? ZerosOf(method->out_args) : answer.values);
    g_dbus_method_invocation_return_value(invocation, reply.get());
}
