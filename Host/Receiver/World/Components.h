// Which of a list of components a player presents.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Host/Receiver/World/Scenario.h"

namespace Receiver {

// The pid that stands for "whichever the receiver prefers".
inline constexpr std::int32_t AnyPid = -1;

// There are some, and no picture among them.
[[nodiscard]] bool areOnlySound(const std::vector<Component>& components);

// Stands in for what a channel, or a film that is not decoded, has to say in these subtitles.
[[nodiscard]] std::string namesOfSubtitles(const std::vector<Component>& components);

class ComponentSelection {
 public:
    // Until a page selects, the receiver shows the first video, the audio of the preferred language (else the
    // first) and no subtitles.
    [[nodiscard]] std::vector<Component> list(const std::vector<Component>& all, ComponentType type,
                                              bool activeOnly, const std::string& preferredLanguages) const;

    // False when the list has no such component.
    bool select(const std::vector<Component>& all, std::int32_t type, std::int32_t pid);
    bool unselect(const std::vector<Component>& all, std::int32_t type, std::int32_t pid);
    void reset() { m_choices = {}; }

 private:
    enum class Kind { Preferred, None, Pid };
    struct Choice {
        Kind kind = Kind::Preferred;
        std::int16_t pid = 0;
    };

    std::array<std::optional<Choice>, 3> m_choices;
};

}  // namespace Receiver
