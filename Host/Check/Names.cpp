// What stands on the bus: names, and what the object says that it has; and at the end, what its signals were
// like.
#include <map>

#include "Host/Check/Session.h"

namespace Check {

using namespace Host;

namespace {

void note(std::string& list, const std::string& word) {
    list += (list.empty() ? "" : ", ") + word;
}

// What is different is added to `wrong`.
template <typename Info, typename TypesOf>
void compareMembers(Info** wanted, Info** told, const TypesOf& types, const Interface& interface,
                    std::string& wrong, std::string& left) {
    std::map<std::string, std::string> has;
    for (Info* each : listOf(told))
        has[each->name] = types(each);
    for (Info* each : listOf(wanted)) {
        const auto found = has.find(each->name);
        if (found == has.end())
            note(interface.isOptional(each->name) ? left : wrong, std::string(each->name) + " is missing");
        else if (found->second != types(each))
            note(wrong, std::string(each->name) + " is " + found->second + ", not " + types(each));
    }
}

std::string compareIntrospection(const Interface& interface, GDBusNodeInfo* node) {
    GDBusInterfaceInfo* told = g_dbus_node_info_lookup_interface(node, interface.info->name);
    require(told != nullptr, "the object does not say that it has the interface");
    std::string wrong;
    std::string left;
    compareMembers(
        interface.info->methods, told->methods,
        [](const GDBusMethodInfo* method) {
            return typesOf(method->in_args) + " -> " + typesOf(method->out_args);
        },
        interface, wrong, left);
    compareMembers(
        interface.info->signals, told->signals,
        [](const GDBusSignalInfo* signal) { return typesOf(signal->args); }, interface, wrong, left);
    require(wrong.empty(), wrong);
    return left.empty() ? "as described" : left + ", which pages do not need";
}

}  // namespace

void checkNames(Session& session) {
    for (const auto& interface : session.contract) {
        const std::string name = interface.shortName();
        if (session.options.claims(name))
            session.check("Names", name, {}, [&] {
                const std::string owner = session.middleware.ownerOf(interface);
                require(!owner.empty(), "nobody owns " + interface.name());
                session.m_owned.insert(name);
                return "owned by " + owner;
            });
    }
    for (const auto& interface : session.contract) {
        const std::string name = interface.shortName();
        if (session.options.claims(name))
            session.check("Descriptions", name, {name}, [&]() -> std::string {
                const auto node = session.middleware.introspect(interface);
                if (!node)
                    throw Skipped("the object does not describe itself, which pages do not need");
                return compareIntrospection(interface, node.get());
            });
    }
}

void checkSignalTypes(Session& session) {
    std::map<std::string, std::pair<std::string, std::string>>
        wrong;  // The first one by its name, and its reason.
    std::map<std::string, int> counts;
    for (const auto& signal : session.middleware.allSignals()) {
        const auto* interface = session.middleware.findInterface(signal.interface);
        const auto* info = g_dbus_interface_info_lookup_signal(
            const_cast<GDBusInterfaceInfo*>(interface->info), signal.name.c_str());
        const std::string name = signal.interface + "." + signal.name;
        const std::string types = g_variant_get_type_string(signal.values.get());
        ++counts[name];
        if (!info)
            wrong.try_emplace(name, signal.interface, "there is no such signal: " + signal.text);
        else if (typesOf(info->args) != types)
            wrong.try_emplace(name, signal.interface,
                              signal.text + " is " + types + ", not " + typesOf(info->args));
    }
    for (const auto& interface : session.contract) {
        for (const auto* signal : listOf(interface.info->signals)) {
            const std::string name = interface.shortName() + "." + signal->name;
            session.check("Types of signals", name, {interface.shortName()}, [&]() -> std::string {
                if (const auto found = wrong.find(name); found != wrong.end())
                    throw Failed(found->second.second);
                if (counts[name] == 0)
                    throw Skipped("none came");
                return std::to_string(counts[name]) + " came";
            });
            wrong.erase(name);
        }
    }
    for (const auto& [name, fault] : wrong)
        session.check("Types of signals", name, {fault.first},
                      [&]() -> std::string { throw Failed(fault.second); });
}

}  // namespace Check
