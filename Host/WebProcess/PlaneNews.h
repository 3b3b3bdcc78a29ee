// What the receiver tells of this process's players, and the layouts that the bundle sends it. The bundle and
// this share a connection to the bus, so that both know the players by the same ids.
#pragma once

#include <compare>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "Host/Inc/GCallbacks.h"
#include "Host/Picture/PictureView.h"

namespace WebProcess {

struct PlanePlayer {
    bool isBroadcast = false;
    std::uint32_t id = 0;

    [[nodiscard]] auto operator<=>(const PlanePlayer&) const = default;
};

// No player has this id: the channel behind the applications.
inline constexpr PlanePlayer RunningChannel = {true, 0};

enum class PlanePicture {
    None,    // black
    Card,    // a test card with the title
    Audio,   // there is only something to hear
    Frames,  // what the player decodes
};

struct PlaneContent {
    std::string title;
    PlanePicture picture = PlanePicture::None;
    std::string subtitles;  // in lines

    [[nodiscard]] bool operator==(const PlaneContent&) const = default;
};

// In pixels of the page; places left of or above it are negative.
struct Rectangle {
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;

    [[nodiscard]] bool operator==(const Rectangle&) const = default;
};

struct PlaneLayout {
    Rectangle window;
    bool fullScreen = false;
};

// Hears everything on the main thread.
class PlaneListener {
 public:
    virtual void planeShown(const PlanePlayer& player, const PlaneContent& content) = 0;
    virtual void planeHidden(const PlanePlayer& player) = 0;
    virtual void receiverVanished() = 0;
    // The channel behind the applications; without a title there is none.
    virtual void runningChannelChanged(const PlaneContent& content) = 0;
    virtual void framesOpened(const PlanePlayer& player, std::unique_ptr<Host::PictureView> frames) = 0;
    // There are layouts to be taken.
    virtual void layoutsSent() = 0;

 protected:
    ~PlaneListener() = default;
};

// One for each web process, kept until the process ends.
class PlaneNews : Host::Pinned {
 public:
    explicit PlaneNews(PlaneListener& listener) : m_listener(listener) {}

    // To the bus, unless it listens there already: the bundle replaces a connection that was closed.
    void listen();
    // What the bundle has sent since they were last taken.
    [[nodiscard]] std::vector<std::pair<PlanePlayer, PlaneLayout>> takeLayouts();
    // Answers with framesOpened(), and not at all when there are none (any more).
    void openFrames(const PlanePlayer& player);

 private:
    void onSignal(GDBusConnection* bus, const char*, const char*, const char*, const char* signal,
                  GVariant* parameters);
    void onReceiverAppeared(GDBusConnection* bus, const char*, const char*);
    void onRunningChannel(GObject* bus, GAsyncResult* result);
    void onReceiverVanished(GDBusConnection*, const char*) { m_listener.receiverVanished(); }
    GDBusMessage* onMessage(GDBusConnection*, GDBusMessage* message, gboolean incoming);
    gboolean onLayoutsSent();
    static void onFramesOpened(GObject* bus, GAsyncResult* result, gpointer request);

    void noteLayout(const PlanePlayer& player, GVariant* layout);

    PlaneListener& m_listener;
    Host::GObjectHandle<GDBusConnection> m_bus;
    unsigned m_nameWatch = 0;
    std::mutex m_mutex;
    std::vector<std::pair<PlanePlayer, PlaneLayout>> m_layouts;  // Shared with the thread of the bus.
};

}  // namespace WebProcess
