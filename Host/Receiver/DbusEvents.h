// The world's events as signals on the bus.
#pragma once

#include <gio/gio.h>

#include "Host/Receiver/World/CallLog.h"
#include "Host/Receiver/World/ReceiverEvents.h"

namespace Receiver {

class DbusEvents : public ReceiverEvents {
 public:
    // The skeletons are made after the world, which needs this object: to be called once, before the first
    // call is served. They are not owned.
    void announceOn(GDBusInterfaceSkeleton* daeBrowserApi, GDBusInterfaceSkeleton* dsmcc,
                    GDBusInterfaceSkeleton* control);

    void pluginEvent(const CallerName& to, std::int32_t event, std::uint32_t pluginId) override;
    void pluginEventUnsigned(const CallerName& to, std::int32_t event, std::uint32_t pluginId,
                             std::uint32_t value) override;
    void pluginEventSigned(const CallerName& to, std::int32_t event, std::uint32_t pluginId,
                           std::int32_t value) override;
    void pluginEventFloat(const CallerName& to, std::int32_t event, std::uint32_t pluginId,
                          double value) override;
    void pluginEventData(const CallerName& to, std::int32_t event, std::uint32_t pluginId, std::int32_t first,
                         std::int32_t second) override;
    void streamEvent(const CallerName& to, std::uint32_t status, std::int16_t eventId,
                     const std::string& name, const std::vector<std::uint8_t>& data,
                     std::uint32_t jobId) override;
    void playReadyResponse(const CallerName& to, std::uint32_t transactionId, std::int32_t resultCode,
                           const std::string& message) override;
    void fileResponse(const CallerName& to, std::uint32_t handle, const std::string& url,
                      const std::vector<std::uint8_t>& data, bool status) override;

    void planeShown(const PlanePlayer& player, const PlaneContent& content) override;
    void planeHidden(const PlanePlayer& player) override;
    void runningChannelChanged(const RunningChannel& channel) override;
    void applicationStarted(std::int32_t viewId, const std::string& url) override;
    void applicationDestroyed(std::int32_t viewId) override;
    void applicationVisibilityChanged(std::int32_t viewId, bool visible) override;
    void keyMaskChanged(std::uint32_t mask) override;
    void keyPressed(std::uint32_t keyCode) override;

    void callRecorded(const Call& call);

 private:
    static void emit(const CallerName& to, GDBusInterfaceSkeleton* service, const char* signal,
                     GVariant* arguments);

    GDBusInterfaceSkeleton* m_daeBrowserApi = nullptr;
    GDBusInterfaceSkeleton* m_dsmcc = nullptr;
    GDBusInterfaceSkeleton* m_control = nullptr;
};

}  // namespace Receiver
