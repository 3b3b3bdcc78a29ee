#include "Host/Control/Introspection.h"

#include <string_view>

#include "Host/Control/Failure.h"
#include "Host/Inc/ReceiverNames.h"

namespace Control {

using namespace Host;

namespace {

constexpr std::string_view kPrefix = Receiver::Names::Prefix;

Member memberOf(const std::string& path, const GDBusInterfaceInfo& interface, const char* name,
                GDBusArgInfo** arguments) {
    Member member{path, interface.name, name, {}};
    for (GDBusArgInfo** argument = arguments; argument && *argument; ++argument)
        member.arguments.emplace_back((*argument)->name ? (*argument)->name : "", (*argument)->signature);
    return member;
}

}  // namespace

std::string Member::shortName() const {
    return interface.substr(kPrefix.size()) + "." + name;
}

std::string Member::synopsis() const {
    std::string text = shortName();
    for (const auto& [argument, type] : arguments)
        text += " " + argument + "(" + type + ")";
    return text;
}

void Introspection::add(const std::string& path, const char* xml) {
    const GNodeInfo node(g_dbus_node_info_new_for_xml(xml, nullptr));
    for (GDBusInterfaceInfo** at = node ? node->interfaces : nullptr; at && *at; ++at) {
        const GDBusInterfaceInfo& interface = **at;
        if (!std::string_view(interface.name).starts_with(kPrefix))
            continue;
        for (GDBusMethodInfo** method = interface.methods; method && *method; ++method)
            methods.push_back(memberOf(path, interface, (*method)->name, (*method)->in_args));
        for (GDBusSignalInfo** signal = interface.signals; signal && *signal; ++signal)
            signals.push_back(memberOf(path, interface, (*signal)->name, (*signal)->args));
    }
}

const Member* findMember(const std::vector<Member>& members, const std::string& name) {
    const Member* found = nullptr;
    for (const auto& member : members) {
        if (member.shortName() == name)
            return &member;
        if (member.name != name)
            continue;
        if (found)
            throw Misuse(name + " is " + found->shortName() + " or " + member.shortName());
        found = &member;
    }
    return found;
}

GVariantHandle tupleOf(const Words& words, const Member* member) {
    if (words.size() == 1 && words[0].starts_with('('))
        return argumentOf(words[0], nullptr);
    if (member && member->arguments.size() != words.size())
        throw Misuse("it takes " + std::to_string(member->arguments.size()) +
                     " arguments: " + member->synopsis());
    GVariantBuilder builder;
    g_variant_builder_init(&builder, G_VARIANT_TYPE_TUPLE);
    try {
        for (size_t at = 0; at < words.size(); ++at) {
            const char* type = member ? member->arguments[at].second.c_str() : nullptr;
            g_variant_builder_add_value(&builder, argumentOf(words[at], type).get());
        }
    } catch (const Misuse&) {
        g_variant_builder_clear(&builder);
        throw;
    }
    return GVariantHandle(g_variant_ref_sink(g_variant_builder_end(&builder)));
}

}  // namespace Control
