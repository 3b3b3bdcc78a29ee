#include "IPC/DBUS/Src/AVComponentHandlerWK.h"

#include <utility>

#include "CSP/Inc/PCLog.h"
#include "IPC/DBUS/Src/GLibHandles.h"

namespace {

// One (isbnqysbi).
struct WireComponent {
    gint type = 0;
    const gchar* encoding = "";
    gboolean encrypted = FALSE;
    gint16 pid = 0;
    guint16 caSid = 0;
    guchar componentTag = 0;
    const gchar* language = "";
    gboolean hearingImpaired = FALSE;
    gint lastValue = 0;
};

const char* TrueOrFalse(gboolean value) {
    return value != FALSE ? "true" : "false";
}

// Null for a type that there is no record for.
std::unique_ptr<IAVComponent> Record(const WireComponent& wire) {
    switch (wire.type) {
        case E_COMPONENT_TYPE_VIDEO: {
            auto video = std::make_unique<IVideoComponent>();
            video->encoding = wire.encoding;
            video->caSid = wire.caSid;
            video->aspectRatio = wire.lastValue;
            return video;
        }
        // Only video carries the conditional-access service id.
        case E_COMPONENT_TYPE_AUDIO: {
            auto audio = std::make_unique<IAudioComponent>();
            audio->encoding = wire.encoding;
            audio->language = wire.language;
            audio->hearingImpaired = wire.hearingImpaired != FALSE;
            audio->audioChannels = wire.lastValue;
            return audio;
        }
        // Subtitles carry no encoding either.
        case E_COMPONENT_TYPE_SUBTITLE: {
            auto subtitle = std::make_unique<ISbtComponent>();
            subtitle->language = wire.language;
            subtitle->hearingImpaired = wire.hearingImpaired != FALSE;
            return subtitle;
        }
        default:
            return nullptr;
    }
}

}  // namespace

void DeserialiseAVComponents(AVComponentVector& components, GVariant* array) {
    GVariantIter entries;
    if (array != nullptr)
        g_variant_iter_init(&entries, array);
    WireComponent wire;
    while (array != nullptr &&
           g_variant_iter_next(&entries, "(i&sbnqy&sbi)", &wire.type, &wire.encoding, &wire.encrypted,
                               &wire.pid, &wire.caSid, &wire.componentTag, &wire.language,
                               &wire.hearingImpaired, &wire.lastValue)) {
        HBBTV_LOG_DEBUG(
            "Building IAVComponent with encoding %s, encrypted %s, pid %d, ca_sid %d, comp_tag %d, lang %s, "
            "hearing_impaired %s",
            wire.encoding, TrueOrFalse(wire.encrypted), wire.pid, wire.caSid, wire.componentTag,
            wire.language, TrueOrFalse(wire.hearingImpaired));
        std::unique_ptr<IAVComponent> record = Record(wire);
        if (!record) {
            HBBTV_LOG_WARNING("CAVEventHandlerWK::%s Got type %d?", __func__, wire.type);
            continue;
        }
        record->encrypted = wire.encrypted != FALSE;
        record->pid = wire.pid;
        record->componentTag = wire.componentTag;
        components.push_back(std::move(record));
    }
    HBBTV_LOG_DEBUG("%s returning %zu items.", __func__, components.size());
}
