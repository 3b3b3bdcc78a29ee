#include "Host/Shell/Content/CarouselFile.h"

#include <algorithm>
#include <cctype>
#include <sstream>

namespace Shell {

extern const std::string_view s_contentTypes;  // Lines of an ending and its type.

namespace {

constexpr char kHtml[] = "text/html";
constexpr char kXhtml[] = "application/xhtml+xml";
constexpr char kXml[] = "application/xml";

struct Sign {
    std::string_view text;
    const char* type;
};

constexpr Sign kBeginnings[] = {
    {"<!doctype html", kHtml},
    {"<html", kHtml},
    {"<head", kHtml},
    {"<?xml", kXml},
    {"<svg", "image/svg+xml"},
    {"\x89png\r\n", "image/png"},
    {"\xff\xd8\xff", "image/jpeg"},
    {"gif8", "image/gif"},
};

std::string lowerCase(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return lower;
}

std::string nameIn(const std::string& url) {
    const std::string_view path = std::string_view(url).substr(0, url.find_first_of("?#"));
    const size_t slash = path.rfind('/');
    return lowerCase(slash == std::string_view::npos ? path : path.substr(slash + 1));
}

std::string typeOfEnding(const std::string& name) {
    std::istringstream lines{std::string(s_contentTypes)};
    for (std::string line; std::getline(lines, line);) {
        const size_t space = line.find(' ');
        if (line.starts_with('.') && name.ends_with(line.substr(0, space)))
            return line.substr(space + 1);
    }
    return {};
}

// The first characters after a mark of the encoding and white space.
std::string beginningOf(std::string_view bytes) {
    if (bytes.starts_with("\xef\xbb\xbf"))
        bytes.remove_prefix(3);
    bytes.remove_prefix(std::min(bytes.find_first_not_of(" \t\r\n"), bytes.size()));
    constexpr size_t kEnough = 512;
    return lowerCase(bytes.substr(0, kEnough));
}

bool isText(std::string_view beginning) {
    return std::none_of(beginning.begin(), beginning.end(), [](unsigned char c) {
        return c < ' ' && c != '\t' && c != '\r' && c != '\n' && c != '\f' && c != '\x1b';
    });
}

}  // namespace

std::string mediaTypeOf(const std::string& url, std::string_view bytes) {
    const std::string name = nameIn(url);
    if (std::string type = typeOfEnding(name); !type.empty())
        return type;
    const std::string beginning = beginningOf(bytes);
    for (const Sign& sign : kBeginnings) {
        if (!beginning.starts_with(sign.text))
            continue;
        return sign.type == kXml && beginning.find("<html") != std::string::npos ? kXhtml : sign.type;
    }
    // A folder's page, and the page of an application's bare address.
    if (name.empty())
        return kHtml;
    return isText(beginning) ? "text/plain" : "application/octet-stream";
}

}  // namespace Shell
