// The GStreamer pipeline of this process, which plays one address. Everything that may block happens on a
// thread of its own.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Host/Media/GstHandles.h"
#include "Host/Media/PictureOutput.h"
#include "Host/Media/SubtitleOutput.h"

namespace Media {

// What a pipeline says of itself, as messages of the kind "application".
namespace PipelineSays {
inline constexpr char IsLive[] = "is-live";  // will never say that it has prerolled
inline constexpr char StateChangeFailed[] = "state-change-failed";
inline constexpr char SeekFailed[] = "seek-failed";
// The list of a stream in segments, before what it lists: its field "text" is a GBytes.
inline constexpr char List[] = "list";
}  // namespace PipelineSays

class Pipeline {
 public:
    enum class Seek { Exact, KeyFrames };
    using MessageHandler = std::function<void(GstMessage*)>;

    // The sound is a GStreamer description of a sink; an empty one is the sound device, if there is any.
    // Messages are delivered on the default main context.
    Pipeline(PictureOutput& picture, SubtitleOutput& subtitles, const std::string& sound,
             MessageHandler onMessage);
    Pipeline(const Pipeline&) = delete;
    Pipeline& operator=(const Pipeline&) = delete;
    // There is none: GStreamer's elements can hang and crash when they are stopped, so a pipeline ends with
    // its process.
    ~Pipeline() = delete;

    // What servers are told; before it is opened.
    void setUserAgent(const std::string& userAgent) { m_userAgent = userAgent; }
    // Once.
    void open(const std::string& url);
    void setState(GstState state);
    void seek(double rate, std::uint32_t milliseconds, Seek mode);
    // Since the last seek, or the beginning.
    [[nodiscard]] bool hasGivenPictures() const { return m_picture.count() != m_picturesBefore; }
    void selectStreams(std::vector<std::string> ids);
    void setVolume(double volume);  // 0 to 1
    void setMuted(bool muted);
    void setPictureShown(bool shown) { m_picture.show(shown); }
    void recalculateLatency();

    // Milliseconds; none while unknown.
    [[nodiscard]] std::optional<std::uint32_t> position() const;
    [[nodiscard]] std::optional<std::uint32_t> duration() const;
    [[nodiscard]] bool isSeekable() const;
    // Whether the address is a list of segments, which are fetched one by one.
    [[nodiscard]] bool isAdaptive() const;
    // Whether the message is about the pipeline as a whole.
    [[nodiscard]] bool isSource(GstMessage* message) const;

 private:
    // Has it done in time, in this order, on a thread that may block.
    void post(std::function<void()> work);
    void say(const char* what);

    PictureOutput& m_picture;
    std::atomic<unsigned> m_picturesBefore = 0;  // the last seek
    MessageHandler m_handler;
    GstElement* m_element;
    GstElement* m_volume;
    GThreadPool* m_worker;
    std::string m_userAgent;
};

}  // namespace Media
