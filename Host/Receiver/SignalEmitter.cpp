#include "Host/Receiver/SignalEmitter.h"

#include <algorithm>

#include "Host/Inc/GHandles.h"
#include "Host/Inc/ReceiverNames.h"
#include "Host/Receiver/World/JsonReader.h"

namespace Receiver {

namespace {

// The interface of a name without one.
constexpr const char kDefaultInterface[] = "IDAEBrowserAPI";

const GDBusSignalInfo* findSignal(const GDBusInterfaceInfo& interface, const std::string& name) {
    return g_dbus_interface_info_lookup_signal(const_cast<GDBusInterfaceInfo*>(&interface), name.c_str());
}

}  // namespace

void SignalEmitter::emit(const std::string& signal, GVariant* arguments) const {
    const auto dot = signal.find('.');
    const bool hasInterface = dot != std::string::npos;
    const auto interfaceName = hasInterface ? signal.substr(0, dot) : std::string(kDefaultInterface);
    const auto name = hasInterface ? signal.substr(dot + 1) : signal;

    const auto interface = std::find_if(m_interfaces.begin(), m_interfaces.end(),
                                        [&interfaceName](const GDBusInterfaceInfo* candidate) {
                                            return candidate->name == Names::Prefix + interfaceName;
                                        });
    if (interface == m_interfaces.end())
        throw ScenarioError("", "there is no interface \"" + interfaceName + "\"");
    if (g_dbus_is_member_name(name.c_str()) == FALSE)
        throw ScenarioError("", "\"" + name + "\" is no name of a signal");

    // Any name of an interface that may have some, as any arguments: clients are tried with what is wrong,
    // too.
    const bool mayHaveOthers = hasInterface && interfaceName == kDefaultInterface;
    const bool declaresNone = (*interface)->signals == nullptr || (*interface)->signals[0] == nullptr;
    if (findSignal(**interface, name) == nullptr && !mayHaveOthers && !(hasInterface && declaresNone))
        throw ScenarioError("", "there is no signal \"" + interfaceName + "." + name + "\"");
    if (g_variant_is_of_type(arguments, G_VARIANT_TYPE_TUPLE) == FALSE)
        throw ScenarioError("", std::string("the arguments must be one tuple, are \"") +
                                    g_variant_get_type_string(arguments) + "\"");

    Host::GErrorSlot error;
    if (g_dbus_connection_emit_signal(m_connection, nullptr, Names::ObjectPath, (*interface)->name,
                                      name.c_str(), arguments, error.out()) == FALSE)
        throw ScenarioError("", std::string("the signal could not be sent: ") + error.message());
}

}  // namespace Receiver
