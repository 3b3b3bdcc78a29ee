// The receiver that is steered, on the bus of a running shell or the session's.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "Host/Control/Introspection.h"
#include "Host/Inc/GHandles.h"

namespace Control {

class Television {
 public:
    // Without an address: of the one shell that runs, else of the session's bus. Failure tells what is there
    // instead.
    static Television find(const std::optional<std::string>& address);

    // A method of the control interface; the reply's tuple. Failure with the receiver's own reason. Takes
    // over floating arguments.
    Host::GVariantHandle control(const char* method, GVariant* arguments = nullptr) const;

    // A method of any of its interfaces.
    Host::GVariantHandle call(const Member& method, GVariant* arguments) const;

    // All that its interfaces have.
    [[nodiscard]] Introspection introspect() const;

    // Calls with each entry of the call log, method and arguments, from now until the receiver ends.
    void followCalls(const std::function<void(const char* method, const char* arguments)>& tell) const;

 private:
    explicit Television(Host::GObjectHandle<GDBusConnection> bus) : m_bus(std::move(bus)) {}

    Host::GObjectHandle<GDBusConnection> m_bus;
};

}  // namespace Control
