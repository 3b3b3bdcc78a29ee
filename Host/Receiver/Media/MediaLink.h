// One end of the private line between the receiver and the process that plays a film. A message is a number,
// a word and what belongs to the word; nothing that the other end sends is believed unseen.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "Host/Inc/GCallbacks.h"
#include "Host/Picture/SharedMemory.h"

namespace Receiver {

struct MediaWord {
    const char* name;
    const char* type;  // of the content, as GVariant writes it
};

struct MediaMessage {
    std::uint32_t number = 0;
    std::string word;
    Host::GVariantHandle content;
    Host::Descriptor file;

    // The content of such a message has the word's type.
    [[nodiscard]] bool is(const MediaWord& known) const {
        return word == known.name && g_variant_is_of_type(content.get(), G_VARIANT_TYPE(known.type));
    }
};

class MediaLink : Host::Pinned {
 public:
    // The callbacks run on the default main context, one at a time, and may destroy the link.
    struct Callbacks {
        std::function<void(MediaMessage&)> message;
        // The other end has closed the line, or has sent something that is not a message.
        std::function<void()> end;
    };
    enum class Writes { Wait, NeverWait };

    MediaLink(Host::Descriptor line, Writes writes, Callbacks callbacks);
    ~MediaLink();

    // Takes a floating content; none is "()". False when the other end is gone or takes no more.
    [[nodiscard]] bool send(const MediaWord& word, std::uint32_t number, GVariant* content = nullptr,
                            const Host::Descriptor& file = {});

 private:
    gboolean onReadable(GSocket*, GIOCondition);
    // False at the end of the line.
    [[nodiscard]] bool receive(MediaMessage& message);

    Host::GObjectHandle<GSocket> m_socket;
    std::unique_ptr<GSource, Host::GFree<&g_source_unref>> m_source;
    Callbacks m_callbacks;
};

}  // namespace Receiver
