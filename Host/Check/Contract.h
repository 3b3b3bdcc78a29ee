// The six interfaces as gen/dbus describes them; the descriptions are part of the program.
#pragma once

#include <string>
#include <vector>

#include "Host/Inc/GHandles.h"

namespace Check {

// "IDAEBrowserAPI" of "org.vantrel.hbbtv.IDAEBrowserAPI".
[[nodiscard]] std::string shortName(const std::string& interface);

// The types of the arguments as one tuple, "(ub)".
[[nodiscard]] std::string typesOf(GDBusArgInfo** arguments);

// A null-terminated array of GIO's descriptions; may be null itself.
template <typename Info>
[[nodiscard]] std::vector<Info*> listOf(Info** infos) {
    std::vector<Info*> list;
    while (infos && *infos)
        list.push_back(*infos++);
    return list;
}

struct Interface {
    Host::GNodeInfo node;
    const GDBusInterfaceInfo* info;
    std::vector<std::string> optional;  // Methods that the bundle does not call.

    [[nodiscard]] std::string name() const { return info->name; }
    [[nodiscard]] std::string shortName() const { return Check::shortName(info->name); }
    [[nodiscard]] bool isOptional(const std::string& method) const;
};

[[nodiscard]] std::vector<Interface> readContract();

}  // namespace Check
