#include "Host/Receiver/Media/MediaLink.h"

#include <sys/socket.h>

#include <array>

#include <gio/gunixfdmessage.h>

namespace Receiver {

namespace {

constexpr char kMessageType[] = "(usv)";
constexpr std::size_t kLongest = 65536;

// The first of the descriptors that came along; the others are closed.
Host::Descriptor firstFile(GSocketControlMessage** messages, int count) {
    Host::Descriptor first;
    for (int i = 0; i < count; ++i) {
        const Host::GObjectHandle<GSocketControlMessage> owned(messages[i]);
        if (!G_IS_UNIX_FD_MESSAGE(messages[i]))
            continue;
        int number = 0;
        const std::unique_ptr<int, Host::GFree<&g_free>> numbers(
            g_unix_fd_message_steal_fds(G_UNIX_FD_MESSAGE(messages[i]), &number));
        for (int place = 0; place < number; ++place) {
            Host::Descriptor file(numbers.get()[place]);
            if (!first)
                first = std::move(file);
        }
    }
    g_free(messages);
    return first;
}

}  // namespace

MediaLink::MediaLink(Host::Descriptor line, Writes writes, Callbacks callbacks)
    : m_socket(g_socket_new_from_fd(line.get(), nullptr)), m_callbacks(std::move(callbacks)) {
    if (!m_socket)
        return;
    (void)line.release();
    g_socket_set_blocking(m_socket.get(), writes == Writes::Wait ? TRUE : FALSE);
    m_source.reset(g_socket_create_source(m_socket.get(), G_IO_IN, nullptr));
    g_source_set_callback(m_source.get(), G_SOURCE_FUNC(Host::callback<&MediaLink::onReadable>), this,
                          nullptr);
    g_source_attach(m_source.get(), nullptr);
}

MediaLink::~MediaLink() {
    if (m_source)
        g_source_destroy(m_source.get());
}

bool MediaLink::send(const MediaWord& word, std::uint32_t number, GVariant* content,
                     const Host::Descriptor& file) {
    const Host::GVariantHandle message(g_variant_ref_sink(
        g_variant_new(kMessageType, number, word.name, content ? content : g_variant_new("()"))));
    GOutputVector bytes{g_variant_get_data(message.get()), g_variant_get_size(message.get())};
    const Host::GObjectHandle<GSocketControlMessage> files(file ? g_unix_fd_message_new() : nullptr);
    if (file && !g_unix_fd_message_append_fd(G_UNIX_FD_MESSAGE(files.get()), file.get(), nullptr))
        return false;
    auto* along = files.get();
    return m_socket && g_socket_send_message(m_socket.get(), nullptr, &bytes, 1, file ? &along : nullptr,
                                             file ? 1 : 0, 0, nullptr, nullptr) >= 0;
}

bool MediaLink::receive(MediaMessage& message) {
    std::array<char, kLongest> bytes;
    GInputVector place{bytes.data(), bytes.size()};
    GSocketControlMessage** along = nullptr;
    int count = 0;
    int flags = 0;
    const auto length = g_socket_receive_message(m_socket.get(), nullptr, &place, 1, &along, &count, &flags,
                                                 nullptr, nullptr);
    message.file = firstFile(along, count);
    if (length <= 0 || (flags & MSG_TRUNC) != 0)
        return false;
    const Host::GBytesHandle copy(g_bytes_new(bytes.data(), static_cast<gsize>(length)));
    const Host::GVariantHandle whole(
        g_variant_ref_sink(g_variant_new_from_bytes(G_VARIANT_TYPE(kMessageType), copy.get(), FALSE)));
    if (!g_variant_is_normal_form(whole.get()))
        return false;
    const char* word = nullptr;
    GVariant* content = nullptr;
    g_variant_get(whole.get(), "(u&sv)", &message.number, &word, &content);
    message.word = word;
    message.content.reset(content);
    return true;
}

gboolean MediaLink::onReadable(GSocket*, GIOCondition) {
    // Copied: whoever hears the message may end this link.
    const auto callbacks = m_callbacks;
    MediaMessage message;
    if (receive(message)) {
        callbacks.message(message);
        return G_SOURCE_CONTINUE;
    }
    g_source_destroy(m_source.get());
    callbacks.end();
    return G_SOURCE_REMOVE;
}

}  // namespace Receiver
