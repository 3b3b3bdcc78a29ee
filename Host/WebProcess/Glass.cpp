#include "Host/WebProcess/Glass.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <cairo/cairo.h>

#include "Host/WebProcess/JSHandles.h"
#include "Host/WebProcess/TestCard.h"

namespace WebProcess {

using namespace Host;

namespace {

// Short beside the time that a picture is shown, so that none waits long; it costs one look at the memory.
constexpr unsigned kFramesMs = 8;
// While no other picture has come for a second, and for the clock of a card.
constexpr unsigned kIdleMs = 100;

// Objects that show nothing now, as far as is remembered; the page may have dropped them.
constexpr std::size_t kIdlePlayers = 64;

constexpr char kNoStyle[] = "display: none";
constexpr char kFitting[] = "display: block; object-fit: contain; background: black; ";

// Above the background of the page, beneath all that is in it.
constexpr char kBehind[] = "; z-index: -2147483648";

std::int32_t integer(JSContextRef context, JSValueRef value) {
    const double number = JSValueToNumber(context, value, nullptr);
    return std::abs(number) <= G_MAXINT16 ? static_cast<std::int32_t>(number) : 0;
}

// The pane's own style, as it lies in its hole.
std::string styleOf(const std::optional<PlaneLayout>& layout, const Rectangle& box) {
    const std::string style = kFitting;
    if (layout && layout->fullScreen)
        return style + "position: fixed; left: 0; top: 0; width: 100vw; height: 100vh";
    if (!layout || layout->window == box || layout->window.width <= 0 || layout->window.height <= 0)
        return style + "width: 100%; height: 100%";
    const auto pixels = [](const char* name, std::int32_t value) {
        return std::string(name) + ": " + std::to_string(value) + "px; ";
    };
    const Rectangle& window = layout->window;
    return style + "position: absolute; " + pixels("left", window.x - box.x) +
           pixels("top", window.y - box.y) + pixels("width", window.width) + pixels("height", window.height);
}

}  // namespace

void PlayerPicture::change(const PlaneContent& content) {
    const bool isSamePicture = shows(content.picture) && m_content.title == content.title;
    m_content = content;
    // Only other subtitles: the picture is painted again, though it is the last one and stands.
    if (isSamePicture && m_number != 0)
        m_number = ++m_last;
    if (isSamePicture)
        return;
    m_frames.reset();
    m_card = {};
    m_cardTime = 0;
    m_number = 0;
}

void PlayerPicture::setFrames(std::unique_ptr<PictureView> frames) {
    if (shows(PlanePicture::Frames))
        m_frames = std::move(frames);
}

bool PlayerPicture::update() {
    if (m_frames) {
        if (!m_frames->update())
            return false;
        m_number = m_frames->width() == 0 ? 0 : ++m_last;
        return true;
    }
    if (!shows(PlanePicture::Card) && !shows(PlanePicture::Audio))
        return false;
    // Only the test card has a clock.
    const std::int64_t time = shows(PlanePicture::Card) ? g_get_real_time() / G_USEC_PER_SEC : 1;
    if (std::exchange(m_cardTime, time) == time)
        return false;
    drawCard();
    m_number = ++m_last;
    return true;
}

void PlayerPicture::drawCard() {
    m_card.resize(std::size_t{kCardWidth} * kCardHeight);
    cairo_surface_t* surface =
        cairo_image_surface_create_for_data(reinterpret_cast<unsigned char*>(m_card.data()),
                                            CAIRO_FORMAT_RGB24, kCardWidth, kCardHeight, kCardWidth * 4);
    cairo_t* cairo = cairo_create(surface);
    if (shows(PlanePicture::Card))
        drawTestCard(cairo, m_content.title);
    else
        drawAudioCard(cairo, m_content.title);
    cairo_destroy(cairo);
    cairo_surface_destroy(surface);
    for (auto& pixel : m_card)
        pixel = 0xFF000000 | (pixel & 0xFF) << 16 | (pixel & 0xFF00) | (pixel >> 16 & 0xFF);
}

int PlayerPicture::width() const {
    return m_frames ? m_frames->width() : kCardWidth;
}

int PlayerPicture::height() const {
    return m_frames ? m_frames->height() : kCardHeight;
}

bool PlayerPicture::read(std::uint32_t* pixels) const {
    if (m_frames)
        return m_frames->read(pixels);
    std::copy(m_card.begin(), m_card.end(), pixels);
    return true;
}

JSObjectRef Glass::makeScriptSide(JSContextRef context) {
    m_news.listen();
    const JSObjectRef side = JSObjectMake(context, nullptr, nullptr);
    for (const auto& [name, function] : {std::pair{"place", functionOf<&Glass::place>(context, this)},
                                         {"behind", functionOf<&Glass::behind>(context, this)},
                                         {"remove", functionOf<&Glass::remove>(context, this)},
                                         {"fill", functionOf<&Glass::fill>(context, this)}}) {
        const JSStringHandle key = makeString(name);
        JSObjectSetProperty(context, side, key.get(), function, kJSPropertyAttributeNone, nullptr);
    }
    return side;
}

void Glass::keepOnly(const std::set<JSGlobalContextRef>& contexts) {
    for (auto pane = m_panes.begin(); pane != m_panes.end();) {
        const auto next = std::next(pane);
        if (!contexts.contains(pane->context))
            drop(pane);
        pane = next;
    }
    forgetPlayers(0);
    restartClock();
}

std::list<Glass::Pane>::iterator Glass::find(JSContextRef context, JSValueRef paint) {
    return std::find_if(m_panes.begin(), m_panes.end(),
                        [&](const Pane& pane) { return JSValueIsStrictEqual(context, pane.paint, paint); });
}

bool Glass::isSeen(const PlanePlayer& player) const {
    return std::any_of(m_panes.begin(), m_panes.end(),
                       [&](const Pane& pane) { return pane.player == player; });
}

std::optional<PlanePlayer> Glass::playerIn(const Rectangle& box, bool isBroadcast) const {
    for (const auto& [player, state] : m_players) {
        if (player.isBroadcast == isBroadcast && state.layout && state.layout->window == box &&
            !isSeen(player))
            return player;
    }
    return std::nullopt;
}

// place(paint, isBroadcast, id, x, y, width, height, tell): the pane is in this box, of which `tell` tells
// the bundle. Answers the id of the player that it shows, to be given the next time; none is undefined.
JSValueRef Glass::place(JSContextRef context, Arguments arguments) {
    const bool isBroadcast = JSValueToBoolean(context, arguments[1]);
    const Rectangle box = {integer(context, arguments[3]), integer(context, arguments[4]),
                           integer(context, arguments[5]), integer(context, arguments[6])};
    m_news.listen();
    takeLayouts();
    (void)JSObjectCallAsFunction(context, JSValueToObject(context, arguments[7], nullptr), nullptr, 0,
                                 nullptr, nullptr);
    // The layout that this has led to is that of the hole's player.
    auto told = takeLayouts();
    std::erase_if(told, [&](const PlanePlayer& player) { return player.isBroadcast != isBroadcast; });
    std::optional<PlanePlayer> player;
    if (!told.empty())
        player = told.back();
    else if (JSValueIsNumber(context, arguments[2]))
        player = PlanePlayer{isBroadcast,
                             static_cast<std::uint32_t>(JSValueToNumber(context, arguments[2], nullptr))};
    else
        player = playerIn(box, isBroadcast);

    const auto found = find(context, arguments[0]);
    Pane& pane = found == m_panes.end() ? add(context, arguments[0]) : *found;
    pane.isBroadcast = isBroadcast;
    pane.box = box;
    pane.player = player;
    paintAll();
    return player ? JSValueMakeNumber(context, player->id) : JSValueMakeUndefined(context);
}

// behind(paint): the pane of a whole page.
JSValueRef Glass::behind(JSContextRef context, Arguments arguments) {
    add(context, arguments[0]).isBehind = true;
    restartClock();
    return JSValueMakeUndefined(context);
}

JSValueRef Glass::remove(JSContextRef context, Arguments arguments) {
    const auto pane = find(context, arguments[0]);
    if (pane != m_panes.end())
        drop(pane);
    restartClock();
    return JSValueMakeUndefined(context);
}

// fill(bytes): the picture that is being painted, each pixel red, green, blue and opaque. Answers whether it
// is one.
JSValueRef Glass::fill(JSContextRef context, Arguments arguments) {
    const PlayerPicture* picture = m_filling;
    const JSObjectRef bytes = JSValueToObject(context, arguments[0], nullptr);
    if (!picture || !bytes)
        return JSValueMakeBoolean(context, false);
    const auto count =
        static_cast<std::size_t>(picture->width()) * static_cast<std::size_t>(picture->height());
    auto* target = static_cast<std::uint32_t*>(JSObjectGetTypedArrayBytesPtr(context, bytes, nullptr));
    if (!target || JSObjectGetTypedArrayByteLength(context, bytes, nullptr) != count * sizeof(*target))
        return JSValueMakeBoolean(context, false);
    m_isTorn = !picture->read(target);
    return JSValueMakeBoolean(context, !m_isTorn);
}

Glass::Pane& Glass::add(JSContextRef context, JSValueRef paint) {
    Pane& pane = m_panes.emplace_back();
    pane.context = JSGlobalContextRetain(JSContextGetGlobalContext(context));
    pane.paint = JSValueToObject(context, paint, nullptr);
    JSValueProtect(context, pane.paint);
    return pane;
}

void Glass::drop(std::list<Pane>::iterator pane) {
    JSValueUnprotect(pane->context, pane->paint);
    JSGlobalContextRelease(pane->context);
    m_panes.erase(pane);
}

void Glass::forgetPlayers(std::size_t rest) {
    const auto isIdle = [this](const auto& player) {
        return !player.second.picture && !isSeen(player.first);
    };
    auto idle = static_cast<std::size_t>(std::count_if(m_players.begin(), m_players.end(), isIdle));
    std::erase_if(m_players, [&](const auto& player) { return idle > rest && isIdle(player) && idle-- > 0; });
}

std::vector<PlanePlayer> Glass::takeLayouts() {
    std::vector<PlanePlayer> players;
    for (const auto& [player, layout] : m_news.takeLayouts()) {
        m_players[player].layout = layout;
        players.push_back(player);
    }
    return players;
}

void Glass::layoutsSent() {
    (void)takeLayouts();
    // What was placed before its player had a layout hears of none any more until it moves.
    for (Pane& pane : m_panes) {
        if (!pane.player && !pane.isBehind)
            pane.player = playerIn(pane.box, pane.isBroadcast);
    }
    paintAll();
}

void Glass::planeShown(const PlanePlayer& player, const PlaneContent& content) {
    change(m_players[player].picture, player, content);
}

void Glass::change(std::optional<PlayerPicture>& picture, const PlanePlayer& player,
                   const PlaneContent& content) {
    if (picture && picture->content() == content)
        return;
    if (!picture)
        picture.emplace();
    picture->change(content);
    if (picture->lacksFrames())
        m_news.openFrames(player);
    paintAll();
}

void Glass::planeHidden(const PlanePlayer& player) {
    const auto found = m_players.find(player);
    if (found == m_players.end())
        return;
    found->second.picture.reset();
    forgetPlayers(kIdlePlayers);
    paintAll();
}

void Glass::receiverVanished() {
    for (auto& [player, state] : m_players)
        state.picture.reset();
    m_running.reset();
    paintAll();
}

void Glass::runningChannelChanged(const PlaneContent& content) {
    if (!content.title.empty()) {
        change(m_running, RunningChannel, content);
        return;
    }
    m_running.reset();
    paintAll();
}

void Glass::setLowest(bool isLowest) {
    m_isLowest = isLowest;
    paintAll();
}

void Glass::framesOpened(const PlanePlayer& player, std::unique_ptr<PictureView> frames) {
    const auto found = m_players.find(player);
    auto* picture = player == RunningChannel   ? &m_running
                    : found != m_players.end() ? &found->second.picture
                                               : nullptr;
    if (!picture || !*picture)
        return;
    (*picture)->setFrames(std::move(frames));
    // A film begins to move at once, whatever there was before it.
    m_lastChange = g_get_monotonic_time();
    paintAll();
}

const PlayerPicture* Glass::pictureOf(const Pane& pane) const {
    if (pane.isBehind)
        return m_running && m_isLowest ? &*m_running : nullptr;
    const auto found = pane.player ? m_players.find(*pane.player) : m_players.end();
    return found != m_players.end() && found->second.picture ? &*found->second.picture : nullptr;
}

void Glass::paintAll() {
    for (auto& [player, state] : m_players) {
        if (state.picture && isSeen(player) && state.picture->update())
            m_lastChange = g_get_monotonic_time();
    }
    if (m_running && m_isLowest && m_running->update())
        m_lastChange = g_get_monotonic_time();
    for (Pane& pane : m_panes)
        paint(pane);
    restartClock();
}

void Glass::paint(Pane& pane) {
    const PlayerPicture* picture = pictureOf(pane);
    if (picture && picture->number() == 0)
        picture = nullptr;
    const std::uint64_t number = picture ? picture->number() : 0;
    const auto layout = pane.player ? m_players[*pane.player].layout : std::nullopt;
    std::string style = !picture        ? kNoStyle
                        : pane.isBehind ? styleOf(PlaneLayout{{}, true}, {}) + kBehind
                                        : styleOf(layout, pane.box);
    // What hides a picture behind the page may change at any time. One that moves finds it out with each
    // frame.
    const bool looksAgain = pane.isBehind && picture && !picture->shows(PlanePicture::Frames);
    if (number == pane.painted && style == pane.style && !looksAgain)
        return;
    m_filling = number == pane.painted ? nullptr : picture;
    m_isTorn = false;
    pane.painted = number;
    pane.style = std::move(style);
    const JSStringHandle text = makeString(pane.style.c_str());
    const JSStringHandle subtitles = makeString(picture ? picture->content().subtitles.c_str() : "");
    const JSValueRef arguments[] = {JSValueMakeString(pane.context, text.get()),
                                    JSValueMakeNumber(pane.context, m_filling ? m_filling->width() : 0),
                                    JSValueMakeNumber(pane.context, m_filling ? m_filling->height() : 0),
                                    JSValueMakeString(pane.context, subtitles.get())};
    JSValueRef exception = nullptr;
    const JSValueRef isHidden = JSObjectCallAsFunction(pane.context, pane.paint, nullptr,
                                                       std::size(arguments), arguments, &exception);
    if (exception)
        g_warning("a picture was not painted: %s", toText(pane.context, exception).c_str());
    else if (m_isTorn || (looksAgain && JSValueToBoolean(pane.context, isHidden)))
        pane.painted = 0;
    m_filling = nullptr;
}

void Glass::restartClock() {
    bool moves = false;
    bool hasFrames = false;
    for (const Pane& pane : m_panes) {
        const PlayerPicture* picture = pictureOf(pane);
        hasFrames = hasFrames || (picture && picture->shows(PlanePicture::Frames));
        moves = moves || hasFrames || (picture && picture->shows(PlanePicture::Card));
    }
    const bool isFast = hasFrames && g_get_monotonic_time() - m_lastChange < G_USEC_PER_SEC;
    const unsigned interval = !moves ? 0 : isFast ? kFramesMs : kIdleMs;
    if (interval == std::exchange(m_clockMs, interval))
        return;
    m_clock.reset(interval == 0 ? 0 : g_timeout_add(interval, callback<&Glass::onClock>, this));
}

gboolean Glass::onClock() {
    paintAll();
    return G_SOURCE_CONTINUE;
}

}  // namespace WebProcess
