#include "Host/Receiver/CallDispatcher.h"

#include <memory>
#include <utility>

#include "Host/Inc/ReceiverNames.h"

namespace Receiver {

namespace {

// Calls held back at one time; beyond that the oldest is answered early.
constexpr std::size_t kLargestNumberWaiting = 1000;

std::string shortName(const char* interface, const char* method) {
    const std::string name = interface;
    const std::string prefix = Names::Prefix;
    return (name.starts_with(prefix) ? name.substr(prefix.size()) : name) + "." + method;
}

}  // namespace

void CallDispatcher::addInterface(const GDBusInterfaceInfo& interface) {
    for (auto** method = interface.methods; method != nullptr && *method != nullptr; ++method)
        m_methods.insert(shortName(interface.name, (*method)->name));
}

void CallDispatcher::receive(Host::GObjectHandle<GDBusMethodInvocation> invocation,
                             std::function<void(Host::GObjectHandle<GDBusMethodInvocation>)> answer) {
    auto* raw = invocation.get();
    const auto method = shortName(g_dbus_method_invocation_get_interface_name(raw),
                                  g_dbus_method_invocation_get_method_name(raw));
    const Host::GChars arguments(g_variant_print(g_dbus_method_invocation_get_parameters(raw), FALSE));
    const std::string caller = g_dbus_method_invocation_get_sender(raw);
    const auto call = m_log.add(method, arguments.get(), static_cast<std::uint64_t>(m_timers.now()));
    // A watcher hears of the call after it was answered, which the caller is waiting for.
    const auto announce = [this, &call] {
        if (m_listener)
            m_listener(call);
    };

    const auto found = m_treatments.find(method);
    const auto treatment = found == m_treatments.end() ? Treatment() : found->second;
    // std::function wants to copy what it holds, so the invocation is shared until it is answered.
    const auto held = std::make_shared<Host::GObjectHandle<GDBusMethodInvocation>>(std::move(invocation));
    auto finish = [held, treatment, answer = std::move(answer)] {
        if (treatment.failure)
            g_dbus_method_invocation_return_dbus_error(held->release(), "org.freedesktop.DBus.Error.Failed",
                                                       treatment.failure->c_str());
        else
            answer(std::move(*held));
    };
    if (treatment.delayMs == 0) {
        finish();
        announce();
        return;
    }
    announce();
    if (m_waiting.size() >= kLargestNumberWaiting)
        finishFirst();
    const auto waiting = m_waiting.emplace(m_waiting.end(), m_timers, caller);
    waiting->finish = std::move(finish);
    waiting->timer.start(treatment.delayMs, [this, waiting] {
        const auto run = std::move(waiting->finish);
        m_waiting.erase(waiting);
        run();
    });
}

bool CallDispatcher::delay(const std::string& method, std::uint32_t milliseconds) {
    if (!m_methods.contains(method))
        return false;
    m_treatments[method].delayMs = milliseconds;
    return true;
}

bool CallDispatcher::fail(const std::string& method, const std::string& message) {
    if (!m_methods.contains(method))
        return false;
    m_treatments[method].failure = message;
    return true;
}

void CallDispatcher::reset() {
    m_treatments.clear();
    while (!m_waiting.empty())
        finishFirst();
}

void CallDispatcher::forget(const std::string& caller) {
    m_waiting.remove_if([&caller](const Waiting& waiting) { return waiting.caller == caller; });
}

void CallDispatcher::finishFirst() {
    const auto run = std::move(m_waiting.front().finish);
    m_waiting.pop_front();
    run();
}

}  // namespace Receiver
