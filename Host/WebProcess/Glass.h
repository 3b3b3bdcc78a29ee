// What is to be seen through the holes of the pages: the pictures of this process's players, painted on
// canvases that the browser extensions keep in the holes. Stacking, clipping and scaling are then the page's
// own.
#pragma once

#include <cstdint>
#include <list>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <vector>

#include <JavaScriptCore/JSBase.h>

#include "Host/Inc/GHandles.h"
#include "Host/WebProcess/PlaneNews.h"

namespace WebProcess {

// What one player shows, as the pixels of its newest picture.
class PlayerPicture {
 public:
    void change(const PlaneContent& content);
    [[nodiscard]] const PlaneContent& content() const { return m_content; }
    [[nodiscard]] bool shows(PlanePicture picture) const { return m_content.picture == picture; }

    // The player has frames that nobody has opened yet.
    [[nodiscard]] bool lacksFrames() const { return shows(PlanePicture::Frames) && !m_frames; }
    void setFrames(std::unique_ptr<Host::PictureView> frames);
    // Takes the newest frame, or moves the clock of a card on; true when there is another picture then.
    bool update();

    // Another one for each other picture; 0 while there is none.
    [[nodiscard]] std::uint64_t number() const { return m_number; }
    [[nodiscard]] int width() const;
    [[nodiscard]] int height() const;
    // Copies it, row by row without gaps, each pixel the bytes red, green, blue and 255. False when it is no
    // longer to be had: update() has another then.
    [[nodiscard]] bool read(std::uint32_t* pixels) const;

 private:
    void drawCard();

    PlaneContent m_content;
    std::uint64_t m_number = 0;
    std::uint64_t m_last = 0;
    std::unique_ptr<Host::PictureView> m_frames;
    std::vector<std::uint32_t> m_card;
    std::int64_t m_cardTime = 0;
};

// One for each web process, kept until the process ends. A pane is what the browser extensions have made for
// a hole: a function paint(style, width, height, subtitles) that gives the canvas its style and, unless width
// is 0, its next picture; it answers true when the page lets nothing of it be seen.
class Glass final : private PlaneListener {
 public:
    Glass() : m_news(*this) {}

    // What the extensions reach the glass by: the functions place, behind, remove and fill.
    [[nodiscard]] JSObjectRef makeScriptSide(JSContextRef context);
    // Whether the running channel is behind the page; of several views it is behind the lowest only.
    void setLowest(bool isLowest);
    // The documents that there are; what belongs to others goes.
    void keepOnly(const std::set<JSGlobalContextRef>& contexts);

 private:
    struct Pane {
        JSGlobalContextRef context = nullptr;  // Retained.
        JSObjectRef paint = nullptr;           // Protected.
        bool isBehind = false;                 // Behind the page, for the running channel.
        bool isBroadcast = false;
        Rectangle box;
        std::optional<PlanePlayer> player;
        std::uint64_t painted = 0;
        std::string style;
    };
    struct Player {
        std::optional<PlayerPicture> picture;  // While there is something to be seen of it.
        std::optional<PlaneLayout> layout;
    };

    using Arguments = std::span<const JSValueRef>;

    JSValueRef place(JSContextRef context, Arguments arguments);
    JSValueRef behind(JSContextRef context, Arguments arguments);
    JSValueRef remove(JSContextRef context, Arguments arguments);
    JSValueRef fill(JSContextRef context, Arguments arguments);
    gboolean onClock();

    void planeShown(const PlanePlayer& player, const PlaneContent& content) override;
    void planeHidden(const PlanePlayer& player) override;
    void receiverVanished() override;
    void runningChannelChanged(const PlaneContent& content) override;
    void framesOpened(const PlanePlayer& player, std::unique_ptr<Host::PictureView> frames) override;
    void layoutsSent() override;

    [[nodiscard]] std::list<Pane>::iterator find(JSContextRef context, JSValueRef paint);
    [[nodiscard]] bool isSeen(const PlanePlayer& player) const;
    // A player that no pane shows yet and that has been told of this box: the bundle does not tell it twice.
    [[nodiscard]] std::optional<PlanePlayer> playerIn(const Rectangle& box, bool isBroadcast) const;
    // Notes what the bundle has sent, and whom it was about.
    std::vector<PlanePlayer> takeLayouts();
    Pane& add(JSContextRef context, JSValueRef paint);
    void drop(std::list<Pane>::iterator pane);
    // What there is to see of the player has changed.
    void change(std::optional<PlayerPicture>& picture, const PlanePlayer& player,
                const PlaneContent& content);
    // What the pane has to show now; null for nothing.
    [[nodiscard]] const PlayerPicture* pictureOf(const Pane& pane) const;
    // Those of which nothing is to be seen, the oldest first, but for this many.
    void forgetPlayers(std::size_t rest);
    void paintAll();
    void paint(Pane& pane);
    void restartClock();

    PlaneNews m_news;
    std::list<Pane> m_panes;
    std::map<PlanePlayer, Player> m_players;
    std::optional<PlayerPicture> m_running;
    bool m_isLowest = true;
    const PlayerPicture* m_filling = nullptr;  // While a pane paints it.
    bool m_isTorn = false;                     // It could not be read whole: the next one is.
    Host::GSourceHandle m_clock;
    unsigned m_clockMs = 0;
    std::int64_t m_lastChange = 0;
};

}  // namespace WebProcess
