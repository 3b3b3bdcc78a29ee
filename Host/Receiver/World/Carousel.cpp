#include "Host/Receiver/World/Carousel.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>

#include "Host/Inc/GHandles.h"

namespace Receiver {

namespace {

// More does not belong into one message of the bus.
constexpr std::uintmax_t largestFile = std::uintmax_t{16} * 1024 * 1024;

// The path of an address, decoded: "a b.html" of dvb://current.car/a%20b.html?x#y.
std::string pathOf(const std::string& url) {
    const auto authority = url.find("://");
    const auto slash = url.find('/', authority == std::string::npos ? 0 : authority + 3);
    const auto from =
        authority == std::string::npos ? 0 : (slash == std::string::npos ? url.size() : slash + 1);
    const auto path = url.substr(from, url.find_first_of("?#", from) - from);
    const Host::GChars decoded(g_uri_unescape_string(path.c_str(), nullptr));
    return decoded ? decoded.get() : std::string();
}

std::optional<std::vector<std::uint8_t>> readFile(const std::filesystem::path& folder,
                                                  const std::string& name) {
    std::error_code error;
    const auto path = std::filesystem::canonical(folder / std::filesystem::path(name).relative_path(), error);
    if (error)
        return std::nullopt;
    // An address must not climb out of the folder, whatever dots and links it goes through.
    const auto within = path.lexically_relative(folder);
    if (within.empty() || *within.begin() == ".." || !std::filesystem::is_regular_file(path, error))
        return std::nullopt;
    const auto size = std::filesystem::file_size(path, error);
    if (error || size > largestFile)
        return std::nullopt;
    std::ifstream file(path, std::ios::binary);
    std::vector<std::uint8_t> bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    if (!file)
        return std::nullopt;
    return bytes;
}

}  // namespace

bool Carousel::request(std::uint32_t handle, const std::string& url) {
    if (m_scenario.carousel.folder.empty())
        return false;
    const auto id = m_pending.nextId();
    m_pending.emplace(id, m_timers).start(m_scenario.carousel.replyMs, [this, id, handle, url] {
        m_pending.erase(id);
        respond(handle, url);
    });
    return true;
}

void Carousel::respond(std::uint32_t handle, const std::string& url) {
    const auto bytes = readFile(m_scenario.carousel.folder, pathOf(url));
    m_events.fileResponse(handle, url, bytes.value_or(std::vector<std::uint8_t>()), bytes.has_value());
}

}  // namespace Receiver
