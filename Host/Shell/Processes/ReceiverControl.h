// The shell's side of the receiver's control interface: tells it which view shows what, and hears what it
// wants.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "Host/Inc/GCallbacks.h"

namespace Shell {

// The text in JSON, without its control characters.
[[nodiscard]] std::string jsonText(const std::string& text);

class ReceiverEvents {
 public:
    // It is there (again) and knows no view of ours yet.
    virtual void receiverAppeared() = 0;
    virtual void receiverVanished() = 0;
    virtual void applicationStarted(std::int32_t view, const std::string& url) = 0;
    virtual void applicationDestroyed(std::int32_t view) = 0;
    virtual void applicationVisibilityChanged(std::int32_t view, bool visible) = 0;
    virtual void keyMaskChanged(std::uint32_t mask) = 0;
    virtual void keyPressed(std::uint32_t keyCode) = 0;

 protected:
    ~ReceiverEvents() = default;
};

class ReceiverControl : Host::Pinned {
 public:
    // Without a bus it is silent; without a receiver until there is one.
    ReceiverControl(GDBusConnection* bus, ReceiverEvents& events);
    ~ReceiverControl();

    // Returns when the receiver knows the view, so that what the page then asks of it finds the view known.
    void registerView(std::int32_t view, const std::string& url);
    void changeUrl(std::int32_t view, const std::string& url);
    void unregisterView(std::int32_t view);
    // The view cannot show the application that it was opened for.
    void applicationFailed(std::int32_t view);
    // The mask as it is now; nothing without a receiver.
    [[nodiscard]] std::optional<std::uint32_t> keyMask();
    // A value of the receiver's world, as JSON; empty without a receiver.
    [[nodiscard]] std::string world(const char* pointer);
    void setWorld(const char* pointer, const std::string& json);
    // Media are fetched with that of the pages.
    void setUserAgent(const std::string& userAgent);

 private:
    void onAppeared(GDBusConnection*, const char*, const char*);
    void onVanished(GDBusConnection*, const char*);
    void onSignal(GDBusConnection*, const char*, const char*, const char*, const char* signal,
                  GVariant* parameters);

    [[nodiscard]] Host::GVariantHandle call(const char* method, GVariant* parameters, const char* replyType);
    void send(const char* method, GVariant* parameters);

    Host::GObjectHandle<GDBusConnection> m_bus;
    ReceiverEvents& m_events;
    unsigned m_nameWatch = 0;
    unsigned m_subscription = 0;
    bool m_present = false;
};

}  // namespace Shell
