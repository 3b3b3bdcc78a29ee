// Each method by itself: with arguments as pages have them, at the bounds of their types, and of wrong types.
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Host/Check/Session.h"

namespace Check {

using namespace Host;

namespace {

constexpr char kDae[] = "IDAEBrowserAPI";

// What pages give, as GVariant text: by method and name, by name, by type.
using Sound = std::map<std::string, std::string>;

const Sound& usualSound() {
    static const Sound sound = {// No view of anybody's: what is shown is left alone.
                                {"viewId", "-1"},
                                {"view_id", "-1"},
                                {"url", "'http://check.invalid/'"},
                                {"URL", "'http://check.invalid/'"},
                                {"doc_location", "'http://check.invalid/'"},
                                {"evURL", "'dvb://current/check'"},
                                {"evName", "'check'"},
                                {"mimetype", "'video/mp4'"},
                                {"capability", "'+DL'"},
                                {"major", "1"},
                                {"minor", "2"},
                                {"micro", "1"},
                                {"volume", "50"},
                                {"val", "50"},
                                {"IBroadcastPlayer.SetChannel.onid", "-1"},
                                {"IBroadcastPlayer.SetChannel.tsid", "-1"},
                                {"IBroadcastPlayer.SetChannel.sid", "-1"},
                                {"IDAEBrowserAPI.GetProgramDescriptors.tag_ext", "-1"},
                                {"IDAEBrowserAPI.GetProgramDescriptors.priv", "-1"},
                                {"IDAEBrowserAPI.GetChannelsAndEventFromUrl.url", "'dvb://1.2.3'"},
                                {"DSMCC.FileRequest.url", "'dvb://1.2.3/index.html'"},
                                {"IMetaDataSearch.MdsAdd.target", "1"},
                                {"data", "6"},
                                {"mode", "3"},
                                {"constraints", "[(7, 0, '', 1)]"},
                                {"orderBy", "[(5, true)]"},
                                {"IMetaDataSearch.MdsExpandOrderBy.type", "5"},
                                {"IMetaDataSearch.MdsRemoveConstraints.type", "7"},
                                {"count", "10"},
                                {"b", "true"},
                                {"d", "1.0"},
                                {"s", "''"}};
    return sound;
}

GVariantHandle sunk(GVariant* value) {
    return GVariantHandle(g_variant_ref_sink(value));
}

GVariantHandle parsed(const std::string& type, const std::string& text) {
    GErrorSlot error;
    GVariantHandle value(
        g_variant_parse(G_VARIANT_TYPE(type.c_str()), text.c_str(), nullptr, nullptr, error.out()));
    if (!value)
        g_error("%s is no %s: %s", text.c_str(), type.c_str(), error.message());
    return value;
}

GVariantHandle manyOf(const std::string& type, const std::string& item) {
    constexpr int kMany = 2000;
    std::string text = "[";
    for (int at = 0; at < kMany; ++at)
        text += (at > 0 ? ", " : "") + item;
    return parsed(type, text + "]");
}

// At the bounds of the type, and odd.
std::vector<GVariantHandle> oddValues(const std::string& type) {
    static const std::map<std::string, std::vector<const char*>> texts = {
        {"b", {"false", "true"}},
        {"y", {"0", "255"}},
        {"n", {"-32768", "32767"}},
        {"q", {"0", "65535"}},
        {"i", {"-2147483648", "-1", "0", "2147483647"}},
        {"u", {"0", "2147483648", "4294967295"}},
        {"d", {"0.0", "-1.0", "1e308", "inf", "nan"}},
        {"s", {"''", "'<&\"\\\\%s\\n'", "'Gr\u00fc\u00dfe \U0001F4FA'"}},
        {"a(uusu)", {"[]", "[(4294967295, 1, '', 0), (0, 0, 'a', 4294967295)]"}},
        {"a(ub)", {"[]", "[(4294967295, false)]"}}};
    std::vector<GVariantHandle> values;
    const auto found = texts.find(type);
    if (found == texts.end())
        g_error("no odd values of the type %s", type.c_str());
    for (const char* text : found->second)
        values.push_back(parsed(type, text));
    if (type == "s")
        values.push_back(sunk(g_variant_new_string(std::string(100000, 'x').c_str())));
    if (type == "a(uusu)")
        values.push_back(manyOf(type, "(7, 0, '', 1)"));
    if (type == "a(ub)")
        values.push_back(manyOf(type, "(5, true)"));
    return values;
}

class Methods {
 public:
    Methods(Session& session, const Interface& interface) : m_session(session), m_interface(interface) {}

    void check() {
        for (const auto* method : listOf(m_interface.info->methods)) {
            const std::string name = m_interface.shortName() + "." + method->name;
            m_session.check("Methods of " + m_interface.shortName(), name, {m_interface.shortName()},
                            [&] { return look(name, *method); });
        }
    }

 private:
    std::string look(const std::string& name, const GDBusMethodInfo& method);
    Reply call(const std::string& name, const GDBusMethodInfo& method,
               const std::vector<GVariantHandle>& arguments);
    [[nodiscard]] GVariantHandle soundOf(const std::string& method, const GDBusArgInfo& argument) const;
    // Makes what this method's arguments name; what was made for the one before is let go of.
    void prepare();
    void undo(const std::string& name, const Reply& reply, const GVariantHandle& arguments);
    void tidy(const std::string& method, const std::string& arguments);

    // Calls that are never answered would take hours all together.
    static constexpr int kMostSilent = 3;

    Session& m_session;
    const Interface& m_interface;
    Sound m_ids;
    std::string m_owner;
    int m_silent = 0;
};

GVariantHandle Methods::soundOf(const std::string& method, const GDBusArgInfo& argument) const {
    for (const auto* sound : {&m_ids, &usualSound()}) {
        for (const std::string& key : {method + "." + argument.name, std::string(argument.name)}) {
            if (const auto found = sound->find(key); found != sound->end())
                return parsed(argument.signature, found->second);
        }
    }
    const auto found = usualSound().find(argument.signature);
    return parsed(argument.signature, found == usualSound().end() ? "0" : found->second);
}

Reply Methods::call(const std::string& name, const GDBusMethodInfo& method,
                    const std::vector<GVariantHandle>& arguments) {
    auto& middleware = m_session.middleware;
    std::vector<GVariant*> children;
    for (const auto& argument : arguments)
        children.push_back(argument.get());
    const auto tuple = sunk(g_variant_new_tuple(children.data(), children.size()));
    Reply reply = middleware.call(name, tuple);
    const std::string asked = textOf(tuple.get());
    m_silent = reply.late ? m_silent + 1 : 0;
    middleware.requireAnswer(asked, reply, method);
    if (!reply.value && middleware.ownerOf(m_interface) != m_owner)
        throw Failed(asked + ": the middleware has left the bus");
    undo(name, reply, tuple);
    return reply;
}

std::string Methods::look(const std::string& name, const GDBusMethodInfo& method) {
    if (m_silent >= kMostSilent)
        throw Skipped("the interface does not answer");
    m_owner = m_session.middleware.ownerOf(m_interface);
    if (m_owner.empty())
        throw Skipped("the middleware has left the bus");
    prepare();
    std::vector<GVariantHandle> arguments;
    const auto infos = listOf(method.in_args);
    for (const auto* info : infos)
        arguments.push_back(soundOf(name, *info));
    const Reply sound = call(name, method, arguments);
    if (sound.unknown && m_interface.isOptional(method.name))
        throw Skipped("not there, and pages do not need it");
    require(sound.value != nullptr,
            "what pages ask is answered with an error: " + sound.error + ": " + sound.message);
    int count = 1;
    int errors = 0;
    // It declares what the receiver is able to do.
    const bool isSafe = name != "IDAEBrowserAPI.SetProfileSupport";
    for (size_t at = 0; at < infos.size() && isSafe; ++at) {
        GVariantHandle usual = std::move(arguments[at]);
        for (auto& odd : oddValues(infos[at]->signature)) {
            arguments[at] = std::move(odd);
            errors += call(name, method, arguments).value ? 0 : 1;
            ++count;
        }
        arguments[at] = std::move(usual);
    }
    std::vector<GVariantHandle> wrong;
    wrong.push_back(sunk(g_variant_new_uint64(1)));
    require(!call(name, method, wrong).value, "arguments of wrong types are answered as if they were right");
    return std::to_string(count) + (count == 1 ? " call" : " calls") +
           (errors > 0 ? ", " + std::to_string(errors) + " odd ones answered with an error" : "") +
           "; wrong types refused";
}

void Methods::tidy(const std::string& method, const std::string& arguments) {
    const auto tuple =
        parsed(typesOf(m_session.middleware.findMethod(method)->in_args), "(" + arguments + ",)");
    (void)m_session.middleware.call(method, tuple);
}

void Methods::prepare() {
    auto& middleware = m_session.middleware;
    const std::string interface = m_interface.shortName();
    m_ids["pluginId"] = m_session.newPlayer();
    if (interface != "IMetaDataSearch")
        return;
    for (const auto& [release, argument] : {std::pair{"QcRelease", "id_1"},
                                            {"QcRelease", "id_2"},
                                            {"QcRelease", "constraint_id"},
                                            {"MdsRelease", "mds_id"}}) {
        if (const auto old = m_ids.find(argument); old != m_ids.end())
            tidy(interface + "." + release, old->second);
    }
    const auto id = [&](const char* method, const std::string& arguments) {
        return std::to_string(unsignedOf(middleware.ask(interface + "." + method, arguments)));
    };
    m_ids["id_1"] = m_ids["query_id"] = id("QcAddDataMode", "6, 3, 0");
    m_ids["id_2"] = id("QcAddDataMode", "6, 3, 0");
    m_ids["constraint_id"] = id("QcAddConstraints", "[(7, 0, '', 1)]");
    m_ids["mds_id"] = id("MdsAdd", "1");
    const std::string results = id("MdsGetResults", m_ids["mds_id"]);
    for (const auto* method : listOf(m_interface.info->methods)) {
        const std::string name = method->name;
        m_ids[interface + "." + name + ".id"] = name.starts_with("Qc")   ? m_ids["id_1"]
                                                : name.starts_with("Sr") ? results
                                                : name.starts_with("Pc") ? "0"
                                                                         : m_ids["mds_id"];
    }
}

// Only what the middleware would keep for us.
void Methods::undo(const std::string& name, const Reply& reply, const GVariantHandle& arguments) {
    static const std::map<std::string, std::string> made = {
        {"QcAddOp", "QcRelease"},
        {"QcAddDataMode", "QcRelease"},
        {"QcAddDataModeStr", "QcRelease"},
        {"QcAddConstraints", "QcRelease"},
        {"QcAnd", "QcRelease"},
        {"QcOr", "QcRelease"},
        {"QcNot", "QcRelease"},
        {"SrAdd", "SrRelease"},
        {"MdsAdd", "MdsRelease"},
        {"StreamEventSubscribe", "StreamEventUnsubscribe"}};
    constexpr std::string_view kHolds = "Retain";
    if (!reply.value)
        return;
    const auto dot = name.find('.');
    if (const auto found = made.find(name.substr(dot + 1));
        found != made.end() && unsignedOf(reply.value) != 0)
        tidy(name.substr(0, dot + 1) + found->second, std::to_string(unsignedOf(reply.value)));
    if (name.ends_with(kHolds) && booleanOf(reply.value))
        tidy(name.substr(0, name.size() - kHolds.size()) + "Release", std::to_string(unsignedOf(arguments)));
}

}  // namespace

void checkMethods(Session& session) {
    auto& middleware = session.middleware;
    // What odd arguments change for everybody, to be as it was.
    std::uint32_t channel = 0;
    std::optional<std::uint32_t> mask;
    const auto has = [&](const char* interface) {
        return session.options.claims(interface) &&
               !middleware.ownerOf(*middleware.findInterface(interface)).empty();
    };
    // A fault in these is told by the methods' own checks.
    const auto attempt = [](const std::function<void()>& act) {
        try {
            act();
        } catch (const Failed&) {  // NOLINT(bugprone-empty-catch): See above.
        }
    };
    if (has(kDae)) {
        attempt([&] { channel = session.currentChannel(); });
        attempt([&] { mask = unsignedOf(middleware.ask("IDAEBrowserAPI.GetKeyMask")); });
    }
    for (const auto& interface : session.contract) {
        if (session.options.claims(interface.shortName()))
            Methods(session, interface).check();
    }
    if (has("IBroadcastPlayer") && channel != 0)
        attempt([&] {
            const std::string player = session.newPlayer();
            middleware.forget();
            middleware.ask("IBroadcastPlayer.SetChannel",
                           player + ", 0, '', -1, -1, -1, " + std::to_string(channel));
            // Released too early, it would never be.
            middleware.waitFor(
                [&] { return !middleware.heard({"PluginEventData(100, " + player + ", *"}).empty(); });
        });
    if (has("IBroadcastPlayer"))
        attempt([&] { middleware.ask("IBroadcastPlayer.Release", "0"); });
    if (has("IAVEventHandler"))
        attempt([&] { middleware.ask("IAVEventHandler.ReleasePlayer", "0"); });
    if (mask)
        attempt([&] {
            middleware.ask("IDAEBrowserAPI.SetKeyMask", std::to_string(static_cast<std::int32_t>(*mask)));
        });
}

}  // namespace Check
