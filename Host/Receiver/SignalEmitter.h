// Emits signals by name, for tests of what clients make of them.
#pragma once

#include <string>
#include <vector>

#include <gio/gio.h>

namespace Receiver {

class SignalEmitter {
 public:
    explicit SignalEmitter(GDBusConnection* connection) : m_connection(connection) {}

    // The interface belongs to a skeleton and outlives this object.
    void addInterface(const GDBusInterfaceInfo& interface) { m_interfaces.push_back(&interface); }

    // Throws ScenarioError for what the control interface refuses.
    void emit(const std::string& signal, GVariant* arguments) const;

 private:
    GDBusConnection* m_connection;
    std::vector<const GDBusInterfaceInfo*> m_interfaces;
};

}  // namespace Receiver
