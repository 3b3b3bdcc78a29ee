#include "Host/Shell/View/ShellPages.h"

#include "Host/Inc/GHandles.h"

namespace Shell {

namespace {

std::string page(const std::string& heading, const std::string& first, const std::string& second) {
    using Host::GChars;
    const GChars text(g_markup_printf_escaped(
        "<!DOCTYPE html><html><head><title>%s</title><style>"
        "body{margin:0;padding:200px 140px;background:#101820;color:#e8eef4;font:32px sans-serif}"
        "h1{font-size:52px;margin:0 0 40px}p{margin:0 0 20px;overflow-wrap:anywhere;color:#a9b7c6}"
        "</style></head><body><h1>%s</h1><p>%s</p><p>%s</p></body></html>",
        heading.c_str(), heading.c_str(), first.c_str(), second.c_str()));
    return text.get();
}

}  // namespace

std::string errorPage(const std::string& url, const std::string& reason) {
    return page("The application cannot be shown", reason, url);
}

std::string plainPage(const std::string& heading, const std::string& text) {
    return page(heading, text, "");
}

}  // namespace Shell
