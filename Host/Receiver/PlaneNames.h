// The words of the control interface for players and pictures.
#pragma once

#include <optional>
#include <string_view>

#include "Host/Receiver/World/ReceiverEvents.h"

namespace Receiver::Names {

inline const char* of(PlaneKind kind) {
    return kind == PlaneKind::Broadcast ? "broadcast" : "broadband";
}

inline const char* of(PlanePicture picture) {
    constexpr const char* names[] = {"none", "card", "audio", "frames"};
    return names[static_cast<std::size_t>(picture)];
}

inline std::optional<PlaneKind> planeKind(std::string_view name) {
    for (const auto kind : {PlaneKind::Broadcast, PlaneKind::Broadband}) {
        if (name == of(kind))
            return kind;
    }
    return std::nullopt;
}

}  // namespace Receiver::Names
