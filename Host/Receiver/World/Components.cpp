#include "Host/Receiver/World/Components.h"

#include <algorithm>

#include "Host/Receiver/World/Urls.h"

namespace Receiver {

namespace {

std::vector<Component> ofType(const std::vector<Component>& all, ComponentType type) {
    std::vector<Component> found;
    std::copy_if(all.begin(), all.end(), std::back_inserter(found),
                 [type](const Component& component) { return component.type == type; });
    return found;
}

// Languages are separated by commas, the most wanted first.
std::optional<Component> preferred(const std::vector<Component>& candidates, const std::string& languages) {
    if (candidates.empty())
        return std::nullopt;
    for (const auto& language : split(languages, ',')) {
        const auto spoken = std::ranges::find_if(candidates, [&language](const Component& candidate) {
            return candidate.language == language && !candidate.impaired;
        });
        if (spoken != candidates.end())
            return *spoken;
    }
    return candidates.front();
}

bool isType(std::int32_t type) {
    return type >= 0 && type <= 2;
}

}  // namespace

bool areOnlySound(const std::vector<Component>& components) {
    return !components.empty() && ofType(components, ComponentType::Video).empty();
}

std::string namesOfSubtitles(const std::vector<Component>& components) {
    std::string names;
    for (const auto& component : components)
        names += (names.empty() ? "Subtitles: " : ", ") +
                 (component.language.empty() ? "no language" : component.language) +
                 (component.impaired ? ", for the hearing impaired" : "");
    return names;
}

std::vector<Component> ComponentSelection::list(const std::vector<Component>& all, ComponentType type,
                                                bool activeOnly,
                                                const std::string& preferredLanguages) const {
    auto candidates = ofType(all, type);
    if (!activeOnly)
        return candidates;
    const auto byDefault = type == ComponentType::Subtitle ? Choice{Kind::None} : Choice{Kind::Preferred};
    const auto choice = m_choices[static_cast<std::size_t>(type)].value_or(byDefault);
    if (choice.kind == Kind::None)
        return {};
    if (choice.kind == Kind::Pid) {
        std::vector<Component> chosen;
        std::copy_if(candidates.begin(), candidates.end(), std::back_inserter(chosen),
                     [&choice](const Component& candidate) { return candidate.pid == choice.pid; });
        return chosen;
    }
    const auto best =
        preferred(candidates, type == ComponentType::Video ? std::string() : preferredLanguages);
    return best ? std::vector<Component>{*best} : std::vector<Component>{};
}

bool ComponentSelection::select(const std::vector<Component>& all, std::int32_t type, std::int32_t pid) {
    if (!isType(type))
        return false;
    const auto candidates = ofType(all, static_cast<ComponentType>(type));
    if (pid == AnyPid) {
        m_choices[static_cast<std::size_t>(type)] = Choice{Kind::Preferred};
        return !candidates.empty();
    }
    const bool known = std::any_of(candidates.begin(), candidates.end(),
                                   [pid](const Component& candidate) { return candidate.pid == pid; });
    if (known)
        m_choices[static_cast<std::size_t>(type)] = Choice{Kind::Pid, static_cast<std::int16_t>(pid)};
    return known;
}

bool ComponentSelection::unselect(const std::vector<Component>& all, std::int32_t type, std::int32_t pid) {
    if (!isType(type))
        return false;
    const auto active = list(all, static_cast<ComponentType>(type), true, {});
    const bool wasActive =
        pid == AnyPid || std::any_of(active.begin(), active.end(),
                                     [pid](const Component& candidate) { return candidate.pid == pid; });
    if (wasActive)
        m_choices[static_cast<std::size_t>(type)] = Choice{Kind::None};
    return wasActive;
}

}  // namespace Receiver
