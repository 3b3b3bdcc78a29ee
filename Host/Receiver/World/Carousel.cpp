#include "Host/Receiver/World/Carousel.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>

#include "Host/Inc/GHandles.h"
#include "Host/Receiver/World/Urls.h"

namespace Receiver {

namespace {

// More does not belong into one message of the bus.
constexpr std::uintmax_t kLargestFile = std::uintmax_t{16} * 1024 * 1024;

constexpr const char kFolderPage[] = "index.html";

// The file that an address names, decoded: "a b.html" of dvb://1.2.3/a%20b.html?x#y, and of dvb:/a%20b.html,
// which is the same in the current service. A folder's address, with its slash, names its page. Nothing for
// an address that names no file, such as that of a bare service.
std::optional<std::string> fileNameIn(const std::string& url) {
    if (schemeOf(url) != "dvb")
        return std::nullopt;
    const auto address = url.substr(url.find(':') + 1);
    const auto slash = address.starts_with("//") ? address.find('/', 2) : address.find('/');
    if (slash == std::string::npos)
        return std::nullopt;
    const auto end = address.find_first_of("?#");
    if (end < slash)
        return std::nullopt;
    const auto path = address.substr(slash + 1, end == std::string::npos ? end : end - slash - 1);
    const Host::GChars decoded(g_uri_unescape_string(path.c_str(), nullptr));
    if (!decoded)
        return std::nullopt;
    const std::string name = decoded.get();
    return name.empty() || name.back() == '/' ? name + kFolderPage : name;
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
    if (error || size > kLargestFile)
        return std::nullopt;
    std::ifstream file(path, std::ios::binary);
    std::vector<std::uint8_t> bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    if (!file)
        return std::nullopt;
    return bytes;
}

}  // namespace

bool Carousel::request(std::uint32_t handle, const std::string& url) {
    if (m_scenario.carousel.folder.empty() || m_pending.isFull())
        return false;
    const auto id = m_pending.nextId();
    m_pending.emplace(id, m_timers).start(m_scenario.carousel.replyMs, [this, id, handle, url] {
        m_pending.erase(id);
        respond(handle, url);
    });
    return true;
}

void Carousel::respond(std::uint32_t handle, const std::string& url) {
    const auto name = fileNameIn(url);
    const auto bytes = name ? readFile(m_scenario.carousel.folder, *name) : std::nullopt;
    m_events.fileResponse(m_caller, handle, url, bytes.value_or(std::vector<std::uint8_t>()),
                          bytes.has_value());
}

}  // namespace Receiver
