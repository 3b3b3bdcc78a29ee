// The searching side of the answering process: programmes, and searches by title that are complete as
// soon as they have been started.
#pragma once

#include <gio/gio.h>

#include <cstdint>
#include <string>

#include "Benchmarks/Count.h"

namespace Benchmarks {

inline constexpr char kSearchName[] = "org.vantrel.hbbtv.IMetaDataSearch";
// Of every so many programmes in a row, one has kTitle in its name; they are on different channels.
inline constexpr uint32_t kTitlesInARow = 25;
inline constexpr char kTitle[] = "harbour";
inline const uint32_t kProgrammes = kTitlesInARow * Count(400);

// What the programme cache sends for a programme; ids begin with 1.
struct ProgrammeValues {
    explicit ProgrammeValues(uint32_t id);

    uint32_t channelId;
    uint32_t eventId;
    std::string name;
    std::string description;
    std::string crid;
    uint32_t start;
    uint32_t duration;
    uint32_t rating;
};

// False when the interface could not be exported.
[[nodiscard]] bool ExportSearch(GDBusConnection* bus);

}  // namespace Benchmarks
