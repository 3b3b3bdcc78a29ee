// A web server of the test's own, on a port that the system chose, with manners that a test wants to meet.
// Addresses are /<manner>/<file below the media folder>:
//
//     /good/         with ranges
//     /from-start/   without
//     /silent/       the request is read and never answered
//     /dropped/      half of the file; the rest, and every later request, meets a closed connection
//     /stalled/      half of the file, and then nothing for as long as the client stays
//     /elsewhere/    the client is sent to the file itself, at its file: address
//
// What is not there is answered with 404.
#pragma once

#include <atomic>
#include <filesystem>
#include <string>

#include <gio/gio.h>

#include "Host/Inc/GHandles.h"

namespace MediaTest {

class MediaServer {
 public:
    explicit MediaServer(std::filesystem::path folder);
    MediaServer(const MediaServer&) = delete;
    MediaServer& operator=(const MediaServer&) = delete;
    // Connections that are held open end here.
    ~MediaServer();

    [[nodiscard]] std::string url(const std::string& path) const;
    // What is dropped half way is sent so far and kept open until this is said.
    void drop() { m_dropping = true; }
    // Requests that a client has made.
    [[nodiscard]] int requests() const { return m_requests; }

 private:
    struct Request;

    void serve(GSocketConnection* connection);
    void answer(GSocketConnection* connection, const Request& request);
    // Until the client is gone, or this server, or the fact holds.
    void hold(GSocketConnection* connection, const std::atomic<bool>& fact) const;

    const std::filesystem::path m_folder;
    Host::GObjectHandle<GSocketService> m_service;
    Host::GObjectHandle<GCancellable> m_end;
    std::uint16_t m_port = 0;
    std::atomic<bool> m_dropping = false;
    std::atomic<int> m_requests = 0;
    std::atomic<int> m_busy = 0;
};

}  // namespace MediaTest
