#include "Host/Check/Middleware.h"

#include <algorithm>
#include <limits>

#include "Host/Inc/MainLoop.h"
#include "Host/Inc/ReceiverNames.h"

namespace Check {

using namespace Host;

namespace {

constexpr const char* kPath = Receiver::Names::ObjectPath;
constexpr int kMsOfASecond = 1000;

bool fits(const std::string& pattern, const std::string& text) {
    return g_pattern_match_simple(pattern.c_str(), text.c_str()) != FALSE;
}

std::string joined(const std::vector<const Signal*>& signals) {
    std::string text;
    for (const auto* signal : signals)
        text += (text.empty() ? "" : ", ") + signal->text;
    return text.empty() ? "nothing" : text;
}

// The signals against what is expected: what is wrong already, and whether everything has come.
struct Comparison {
    std::string problem;
    const Expected* missing = nullptr;
};

Comparison compare(const std::vector<const Signal*>& heard, const std::vector<Expected>& expected) {
    std::vector<bool> came(expected.size());
    const auto firstMissing = [&](int before) -> const Expected* {
        for (size_t at = 0; at < expected.size(); ++at) {
            if (!came[at] && expected[at].isNeeded && expected[at].place < before)
                return &expected[at];
        }
        return nullptr;
    };
    int place = 0;
    for (const auto* signal : heard) {
        size_t at = 0;
        while (at < expected.size() &&
               (came[at] || expected[at].place < place || !fits(expected[at].text, signal->text)))
            ++at;
        if (at == expected.size())
            return {signal->text + " came, which does not belong there", nullptr};
        if (const auto* earlier = firstMissing(expected[at].place))
            return {signal->text + " came before " + earlier->text, nullptr};
        came[at] = true;
        place = expected[at].place;
    }
    return {"", firstMissing(std::numeric_limits<int>::max())};
}

}  // namespace

std::string quoted(const std::string& text) {
    const GVariantHandle value(g_variant_ref_sink(g_variant_new_string(text.c_str())));
    return GChars(g_variant_print(value.get(), FALSE)).get();
}

std::string textOf(GVariant* value) {
    constexpr size_t kMostBytes = 4096;
    constexpr size_t kLongest = 160;
    if (g_variant_get_size(value) > kMostBytes)
        return "(" + std::to_string(g_variant_get_size(value)) + " bytes)";
    const std::string text = GChars(g_variant_print(value, FALSE)).get();
    return text.size() > kLongest ? text.substr(0, kLongest) + "..." : text;
}

Middleware::Middleware(GDBusConnection* bus, const std::vector<Interface>& contract, int limitSeconds)
    : m_bus(retain(bus)), m_contract(contract), m_limitSeconds(limitSeconds) {
    for (const auto& interface : contract)
        m_subscriptions.push_back(g_dbus_connection_signal_subscribe(
            bus, interface.info->name, interface.info->name, nullptr, kPath, nullptr,
            G_DBUS_SIGNAL_FLAGS_NONE, callback<&Middleware::onSignal>, this, nullptr));
}

Middleware::~Middleware() {
    for (const auto subscription : m_subscriptions)
        g_dbus_connection_signal_unsubscribe(m_bus.get(), subscription);
}

void Middleware::onSignal(GDBusConnection*, const char*, const char*, const char* interface, const char* name,
                          GVariant* values) {
    m_signals.push_back(
        {shortName(interface), name, name + textOf(values), GVariantHandle(g_variant_ref(values))});
}

const Interface* Middleware::findInterface(const std::string& name) const {
    const auto found = std::find_if(m_contract.begin(), m_contract.end(),
                                    [&name](const Interface& each) { return each.shortName() == name; });
    return found == m_contract.end() ? nullptr : &*found;
}

const GDBusMethodInfo* Middleware::findMethod(const std::string& method) const {
    const auto dot = method.find('.');
    return g_dbus_interface_info_lookup_method(
        const_cast<GDBusInterfaceInfo*>(findInterface(method.substr(0, dot))->info),
        method.c_str() + dot + 1);
}

Reply Middleware::call(const std::string& method, const GVariantHandle& arguments) {
    const auto dot = method.find('.');
    const std::string name = Receiver::Names::Prefix + method.substr(0, dot);
    GError* raw = nullptr;
    const auto begin = g_get_monotonic_time();
    Reply reply;
    reply.value.reset(g_dbus_connection_call_sync(
        m_bus.get(), name.c_str(), kPath, name.c_str(), method.c_str() + dot + 1, arguments.get(), nullptr,
        G_DBUS_CALL_FLAGS_NO_AUTO_START, m_limitSeconds * kMsOfASecond, nullptr, &raw));
    const auto end = g_get_monotonic_time();
    // Signals that were sent before the answer are heard before it.
    while (g_main_context_iteration(nullptr, FALSE)) {
    }
    m_timings[method].push_back(static_cast<double>(end - begin) / kMsOfASecond);
    const GErrorHandle error(raw);
    if (!error)
        return reply;
    const GChars remote(g_dbus_error_get_remote_error(error.get()));
    g_dbus_error_strip_remote_error(error.get());
    reply.error = remote ? remote.get() : "no answer";
    reply.message = error->message;
    reply.late = g_error_matches(error.get(), G_IO_ERROR, G_IO_ERROR_TIMED_OUT);
    reply.unknown = g_error_matches(error.get(), G_DBUS_ERROR, G_DBUS_ERROR_UNKNOWN_METHOD) ||
                    g_error_matches(error.get(), G_DBUS_ERROR, G_DBUS_ERROR_NOT_SUPPORTED);
    return reply;
}

GVariantHandle Middleware::ask(const std::string& method, const std::string& arguments) {
    const auto* info = findMethod(method);
    const bool isOne = listOf(info->in_args).size() == 1;
    const std::string tuple = "(" + arguments + (isOne ? ",)" : ")");
    GErrorSlot error;
    const GVariantHandle values(g_variant_parse(G_VARIANT_TYPE(typesOf(info->in_args).c_str()), tuple.c_str(),
                                                nullptr, nullptr, error.out()));
    if (!values)
        throw Failed(method + tuple + " cannot be asked: " + error.message());
    Reply reply = call(method, values);
    const std::string asked = method + textOf(values.get());
    requireAnswer(asked, reply, *info);
    if (!reply.value)
        throw Failed(asked + ": " + reply.error + ": " + reply.message);
    return std::move(reply.value);
}

void Middleware::requireAnswer(const std::string& asked, const Reply& reply,
                               const GDBusMethodInfo& method) const {
    if (reply.late)
        throw Failed(asked + ": no answer within " + limitText());
    const std::string types = typesOf(method.out_args);
    if (reply.value && types != g_variant_get_type_string(reply.value.get()))
        throw Failed(asked + " is answered with " + g_variant_get_type_string(reply.value.get()) + ", not " +
                     types);
}

std::string Middleware::ownerOf(const Interface& interface) {
    GErrorSlot error;
    const GVariantHandle reply(g_dbus_connection_call_sync(
        m_bus.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "GetNameOwner",
        g_variant_new("(s)", interface.info->name), G_VARIANT_TYPE("(s)"), G_DBUS_CALL_FLAGS_NONE,
        m_limitSeconds * kMsOfASecond, nullptr, error.out()));
    const char* owner = "";
    if (reply)
        g_variant_get(reply.get(), "(&s)", &owner);
    return owner;
}

GNodeInfo Middleware::introspect(const Interface& interface) {
    GErrorSlot error;
    const GVariantHandle reply(g_dbus_connection_call_sync(
        m_bus.get(), interface.info->name, kPath, "org.freedesktop.DBus.Introspectable", "Introspect",
        nullptr, G_VARIANT_TYPE("(s)"), G_DBUS_CALL_FLAGS_NO_AUTO_START, m_limitSeconds * kMsOfASecond,
        nullptr, error.out()));
    if (!reply)
        return nullptr;
    const char* xml = nullptr;
    g_variant_get(reply.get(), "(&s)", &xml);
    return GNodeInfo(g_dbus_node_info_new_for_xml(xml, nullptr));
}

std::vector<const Signal*> Middleware::heard(const std::vector<std::string>& patterns) const {
    std::vector<const Signal*> found;
    for (size_t at = m_first; at < m_signals.size(); ++at) {
        const auto fitsSignal = [&](const std::string& pattern) { return fits(pattern, m_signals[at].text); };
        if (std::any_of(patterns.begin(), patterns.end(), fitsSignal))
            found.push_back(&m_signals[at]);
    }
    return found;
}

bool Middleware::waitFor(const std::function<bool()>& fact, unsigned moreMs) {
    return runUntil(fact, static_cast<unsigned>(m_limitSeconds * kMsOfASecond) + moreMs);
}

void Middleware::expect(const std::vector<std::string>& relevant, const std::vector<Expected>& expected,
                        unsigned moreMs) {
    Comparison result;
    waitFor(
        [&] {
            result = compare(heard(relevant), expected);
            return !result.problem.empty() || result.missing == nullptr;
        },
        moreMs);
    if (!result.problem.empty())
        throw Failed(result.problem + "; heard: " + joined(heard(relevant)));
    if (result.missing)
        throw Failed(result.missing->text + " did not come within " + limitText() +
                     "; heard: " + joined(heard(relevant)));
}

}  // namespace Check
