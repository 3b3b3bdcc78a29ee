#include "Host/Receiver/World/World.h"

#include <algorithm>

#include <nlohmann/json.hpp>

#include "Host/Receiver/World/JsonReader.h"
#include "Host/Receiver/World/SimulatedMediaPlayer.h"
#include "Host/Receiver/World/Urls.h"

namespace Receiver {

namespace {

constexpr std::size_t kLargestNumberOfProfiles = 256;
constexpr const char kStatePointer[] = "/state";

nlohmann::json::json_pointer parsePointer(const std::string& pointer) {
    try {
        return nlohmann::json::json_pointer(pointer);
    } catch (const nlohmann::json::exception&) {
        throw ScenarioError("", "\"" + pointer + "\" is no JSON pointer");
    }
}

nlohmann::json at(const nlohmann::json& document, const std::string& pointer) {
    const auto path = parsePointer(pointer);
    try {
        return document.at(path);
    } catch (const nlohmann::json::exception&) {
        throw ScenarioError(pointer, "there is no such value");
    }
}

void place(nlohmann::json& document, const std::string& pointer, nlohmann::json value) {
    const auto path = parsePointer(pointer);
    try {
        // The library would fill a list up to any index; only the place behind the last element may be new.
        if (!path.empty() && document.contains(path.parent_pointer())) {
            const auto& parent = document.at(path.parent_pointer());
            if (parent.is_array() && path.back() != "-" && path.back() != std::to_string(parent.size()))
                document.at(path) = nullptr;
        }
        document[path] = std::move(value);
    } catch (const nlohmann::json::exception&) {
        throw ScenarioError(pointer, "there is no such place");
    }
}

// What all callers hold together: what is counted is added up, and players are told apart by their caller.
void addUp(nlohmann::json& state, const CallerName& caller, const nlohmann::json& held) {
    for (const auto& [kind, value] : held.items()) {
        auto& total = state[kind];
        if (value.is_number()) {
            total =
                total.is_null() ? value : nlohmann::json(total.get<std::size_t>() + value.get<std::size_t>());
            continue;
        }
        for (const auto& [id, entry] : value.items())
            total[caller + " " + id] = entry;
    }
}

}  // namespace

World::World(nlohmann::json document, std::string folder, Timers& timers, ReceiverEvents& events,
             MediaPlayerFactory makePlayer, const std::string& pictures)
    : m_document(std::make_unique<nlohmann::json>(std::move(document))),
      m_folder(std::move(folder)),
      m_scenario(readScenario(*m_document, m_folder)),
      m_timers(timers),
      m_events(events),
      m_applications(m_scenario, events),
      m_review(timers),
      m_plane(events, [this] { reviewRunningChannel(); }),
      m_relatedAtStart(m_scenario.broadcast.related),
      m_origin(utc()),
      m_profiles(m_scenario.capabilities.profiles.begin(), m_scenario.capabilities.profiles.end()),
      m_tuner(
          m_scenario,
          [this](const Channel& channel) {
              const auto* programme = present(channel, m_origin, utc());
              return programme == nullptr ? std::uint8_t{0} : programme->rating;
          },
          [this](const PlanePlayer& by) {
              for (const auto& [name, caller] : m_callers)
                  caller->broadcast().follow(by);
          }),
      m_surroundings{m_scenario,
                     timers,
                     events,
                     m_applications,
                     m_plane,
                     m_tuner,
                     m_live,
                     makePlayer
                         ? std::move(makePlayer)
                         : [this](MediaListener& listener, PictureSink&) -> std::unique_ptr<MediaPlayer> {
                         return std::make_unique<SimulatedMediaPlayer>(m_scenario, m_timers, listener);
                     },
                     [this] {
                         std::size_t count = 0;
                         for (const auto& [name, caller] : m_callers)
                             count += caller->media().atWork();
                         return count;
                     },
                     [this] {
                         return Moment{m_origin, utc()};
                     }},
      m_live(m_surroundings.makePlayer, timers, {m_folder, pictures}, [this] {
          for (const auto& [name, caller] : m_callers)
              caller->broadcast().pictureChanged();
          reviewRunningChannel();
      }) {
    m_runningChannel = runningChannel();
}

World::~World() = default;

Caller& World::caller(const CallerName& name) {
    auto& entry = m_callers[name];
    if (entry == nullptr)
        entry = std::make_unique<Caller>(name, m_surroundings);
    return *entry;
}

Caller* World::find(const CallerName& name) {
    const auto found = m_callers.find(name);
    return found == m_callers.end() ? nullptr : found->second.get();
}

void World::forget(const CallerName& name) {
    if (m_applications.forget(name))
        reviewRunningChannel();
    const auto found = m_callers.find(name);
    if (found == m_callers.end())
        return;
    found->second->endPlayers();
    m_callers.erase(found);
}

nlohmann::json World::value(const std::string& pointer) {
    auto whole = document();
    whole["state"] = state();
    return at(whole, pointer);
}

void World::setValue(const std::string& pointer, const std::string& json) {
    if (pointer == kStatePointer || pointer.starts_with(std::string(kStatePointer) + "/"))
        throw ScenarioError(pointer, "the state can only be read");
    auto changed = document();
    place(changed, pointer, parseJson(json));
    // A lower maximum takes the bits away that it does not have, as it would on a television.
    if (pointer == "/keys/maximum" && changed[nlohmann::json::json_pointer(pointer)].is_number_unsigned())
        changed["keys"]["mask"] = m_scenario.keys.mask & changed["keys"]["maximum"].get<std::uint32_t>();
    auto next = readScenario(changed, m_folder);
    *m_document = std::move(changed);
    if (pointer == "/broadcast/related" || pointer == "/broadcast" || pointer.empty())
        m_relatedAtStart = next.broadcast.related;
    adopt(std::move(next));
}

void World::registerView(std::int32_t viewId, const std::string& url, const CallerName& shell) {
    if (!m_applications.registerView(viewId, url, shell))
        return;
    m_scenario.broadcast.related = m_relatedAtStart;
    m_tuner.restore();
    reviewRunningChannel();
}

bool World::unregisterView(std::int32_t viewId) {
    reviewRunningChannel();
    return m_applications.unregisterView(viewId);
}

RunningChannel World::runningChannel() const {
    const auto* channel = m_tuner.channel();
    const bool isIdle = std::all_of(m_callers.begin(), m_callers.end(), [](const auto& caller) {
        return caller.second->broadcast().areUnrealized() && caller.second->media().atWork() == 0;
    });
    if (channel == nullptr || !m_scenario.broadcast.related || !isIdle || m_tuner.obstacle(*channel))
        return {};
    return {channel->name, m_live.pictureOf(*channel)};
}

void World::reviewRunningChannel() {
    m_review.start(0, [this] {
        const auto volume = liveVolume();
        m_live.show(volume ? m_tuner.channel() : nullptr, volume.value_or(0));
        if (auto now = runningChannel(); now != m_runningChannel) {
            m_runningChannel = std::move(now);
            m_events.runningChannelChanged(m_runningChannel);
        }
    });
}

std::optional<std::int32_t> World::liveVolume() const {
    std::optional<std::int32_t> volume;
    for (const auto& [name, caller] : m_callers)
        volume = std::max(volume, caller->broadcast().loudest());
    // Behind the applications it is seen where there is a screen.
    if (!volume && !m_applications.views().empty() && !runningChannel().name.empty())
        volume = m_scenario.broadcast.volume;
    return volume;
}

std::size_t World::triggerStreamEvent(const std::string& name, const std::vector<std::uint8_t>& data) {
    std::size_t count = 0;
    for (const auto& [caller, held] : m_callers)
        count += held->streamEvents().trigger(name, data);
    return count;
}

void World::setKeyMask(std::uint32_t mask) {
    const auto before = m_scenario.keys.mask;
    m_scenario.keys.mask = mask & m_scenario.keys.maximum;
    if (m_scenario.keys.mask != before)
        m_events.keyMaskChanged(m_scenario.keys.mask);
}

std::int64_t World::utc() const {
    return m_scenario.clock.fixedUtc ? std::int64_t{*m_scenario.clock.fixedUtc} : m_timers.utc();
}

std::vector<ScheduledProgramme> World::programmes(std::uint32_t channelId) const {
    const auto* channel = m_scenario.channel(channelId);
    return channel == nullptr ? std::vector<ScheduledProgramme>() : upcoming(*channel, m_origin, utc());
}

std::vector<std::uint32_t> World::channelsAt(const std::string& url, std::uint16_t& eventId) const {
    const auto service = parseDvbService(url);
    std::vector<std::uint32_t> ids;
    eventId = service ? service->eventId.value_or(0) : std::uint16_t{0};
    if (!service)
        return ids;
    for (const auto& channel : m_scenario.broadcast.channels) {
        const bool sameStream =
            channel.onid == service->onid && (!service->tsid || channel.tsid == *service->tsid);
        if (sameStream && channel.sid == service->sid)
            ids.push_back(channel.id);
    }
    return ids;
}

void World::addProfile(const Profile& profile) {
    if (m_profiles.size() < kLargestNumberOfProfiles)
        m_profiles.insert(profile);
}

bool World::hasProfile(const Profile& profile) const {
    return m_profiles.contains(profile);
}

nlohmann::json World::document() const {
    auto live = *m_document;
    live["applications"].emplace("boundary_origins", nlohmann::json::array());
    live["keys"]["mask"] = m_scenario.keys.mask;
    live["broadcast"]["current_channel"] = m_scenario.broadcast.currentChannel;
    live["broadcast"]["related"] = m_scenario.broadcast.related;
    return live;
}

nlohmann::json World::state() {
    const auto none = nlohmann::json::object();
    // Nobody's share first, so that each kind is there when nobody holds any.
    nlohmann::json state = Caller(CallerName(), m_surroundings).describe();
    state["views"] = state["callers"] = none;
    for (const auto& [id, view] : m_applications.views())
        state["views"][std::to_string(id)] = {
            {"url", view.url}, {"visible", view.visible}, {"started", view.started}};
    for (const auto& [name, caller] : m_callers) {
        const auto held = caller->describe();
        addUp(state, name, held);
        state["callers"][name] = held;
    }
    return state;
}

void World::adopt(Scenario next) {
    const auto before = std::move(m_scenario);
    m_scenario = std::move(next);
    for (const auto& [name, caller] : m_callers)
        caller->forgetLostChannels();
    reviewRunningChannel();
    if (m_scenario.keys.mask != before.keys.mask)
        m_events.keyMaskChanged(m_scenario.keys.mask);
    if (m_scenario.broadcast.currentChannel != before.broadcast.currentChannel) {
        m_tuner.remember();
        for (const auto& [name, caller] : m_callers)
            caller->broadcast().currentChannelChanged();
    }
    if (m_scenario.drm.sasSessionOpen != before.drm.sasSessionOpen)
        m_events.pluginEventUnsigned(Everybody, Event::SasSession, 0, m_scenario.drm.sasSessionOpen ? 1 : 0);
}

}  // namespace Receiver
