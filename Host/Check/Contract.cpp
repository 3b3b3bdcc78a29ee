#include "Host/Check/Contract.h"

#include <algorithm>
#include <string_view>

#include "Host/Inc/ReceiverNames.h"

namespace Check {

using namespace Host;

// All six files, one after the other.
extern const std::string_view s_descriptions;

namespace {

// The comment before a method says whether the bundle calls it; where its lines break is of no account.
bool isNotCalled(const std::string& xml, const char* method) {
    const auto at = xml.find(std::string("<method name=\"") + method + "\"");
    const auto begin = xml.rfind("<!--", at);
    if (at == std::string::npos || begin == std::string::npos)
        return false;
    const std::string comment = xml.substr(begin, at - begin);
    return g_regex_match_simple("The\\s+bundle\\s+does\\s+not\\s+call\\s+it", comment.c_str(),
                                G_REGEX_DEFAULT, G_REGEX_MATCH_DEFAULT) != FALSE;
}

}  // namespace

std::string shortName(const std::string& interface) {
    constexpr std::string_view prefix = Receiver::Names::Prefix;
    return interface.starts_with(prefix) ? interface.substr(prefix.size()) : interface;
}

std::string typesOf(GDBusArgInfo** arguments) {
    std::string types = "(";
    for (const auto* argument : listOf(arguments))
        types += argument->signature;
    return types + ")";
}

bool Interface::isOptional(const std::string& method) const {
    return std::find(optional.begin(), optional.end(), method) != optional.end();
}

std::vector<Interface> readContract() {
    constexpr std::string_view kEnd = "</interface>";
    std::vector<Interface> contract;
    const std::string all(s_descriptions);
    for (auto at = all.find("<interface "); at != std::string::npos; at = all.find("<interface ", at + 1)) {
        const std::string xml = "<node>" + all.substr(at, all.find(kEnd, at) + kEnd.size() - at) + "</node>";
        GErrorSlot error;
        GNodeInfo node(g_dbus_node_info_new_for_xml(xml.c_str(), error.out()));
        if (!node)
            g_error("a description that is part of this program: %s", error.message());
        const GDBusInterfaceInfo* info = node->interfaces[0];
        std::vector<std::string> optional;
        for (const auto* method : listOf(info->methods)) {
            if (isNotCalled(xml, method->name))
                optional.emplace_back(method->name);
        }
        contract.push_back({std::move(node), info, std::move(optional)});
    }
    return contract;
}

}  // namespace Check
