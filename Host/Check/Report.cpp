#include "Host/Check/Report.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numeric>

#include "Host/Inc/GHandles.h"

namespace Check {

using namespace Host;

namespace {

constexpr double kFastestShownMs = 0.05;

// What a middleware says may be anything; a control character has no place in a line or in XML.
std::string oneLine(const std::string& text) {
    constexpr size_t kLongest = 400;
    const GChars valid(g_utf8_make_valid(text.data(), static_cast<gssize>(text.size())));
    std::string line = valid.get();
    std::replace_if(
        line.begin(), line.end(), [](unsigned char c) { return c < ' ' || c == 0x7F; }, ' ');
    if (line.size() <= kLongest)
        return line;
    line.resize(kLongest);
    return GChars(g_utf8_make_valid(line.data(), -1)).get() + std::string("...");
}

std::string escaped(const std::string& text) {
    return GChars(g_markup_escape_text(text.c_str(), -1)).get();
}

std::string number(double value, int decimals) {
    char text[G_ASCII_DTOSTR_BUF_SIZE];
    return g_ascii_formatd(text, sizeof text, ("%." + std::to_string(decimals) + "f").c_str(), value);
}

std::string milliseconds(double value) {
    return number(value, value < 10 ? 2 : 0) + " ms";
}

double medianOf(std::vector<double> times) {
    const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
}

// Tenfold time is one step to the right; all of the width is the limit.
std::string widthOf(double ms, double limitMs) {
    const double part =
        std::log(std::max(ms, kFastestShownMs) / kFastestShownMs) / std::log(limitMs / kFastestShownMs);
    return number(100 * std::clamp(part, 0.0, 1.0), 1) + "%";
}

std::string rowOf(const std::string& method, const std::vector<double>& times, double limitMs) {
    const double median = medianOf(times);
    const double worst = *std::max_element(times.begin(), times.end());
    return "<tr><td><code>" + escaped(method) + "</code><td class=n>" + std::to_string(times.size()) +
           "<td class=n>" + milliseconds(median) + "<td class=n>" + milliseconds(worst) +
           "<td class=bars><i class=worst style=width:" + widthOf(worst, limitMs) +
           "></i><i class=median style=width:" + widthOf(median, limitMs) + "></i>\n";
}

std::string rowOf(const Finding& finding) {
    const std::string word = wordOf(finding.verdict);
    return "<tr class=" + word + "><td class=v>" + word + "<td class=name>" + escaped(finding.name) +
           "<td class=reason>" + escaped(finding.reason) + "<td class=n>" +
           milliseconds(finding.milliseconds) + "\n";
}

std::string ticks(double limitMs) {
    std::string text;
    for (const auto& [ms, label] :
         {std::pair{0.1, "0.1 ms"}, {1.0, "1 ms"}, {10.0, "10 ms"}, {100.0, "100 ms"}, {1000.0, "1 s"}}) {
        if (ms < limitMs)
            text += std::string("<b style=left:") + widthOf(ms, limitMs) + ">" + label + "</b>";
    }
    return text;
}

constexpr char kStyle[] = R"css(
body { font: 15px/1.45 system-ui, "DejaVu Sans", sans-serif; color: #1b2330; background: #fff; margin: 2rem auto; max-width: 72rem; padding: 0 1rem }
h1 { font-size: 1.5rem; margin-bottom: .2rem } h2 { font-size: 1.1rem; margin: 2rem 0 .4rem }
table { border-collapse: collapse; width: 100% } td, th { text-align: left; padding: .25rem .6rem; border-bottom: 1px solid #e3e7ee; vertical-align: top }
th { font-weight: 600; color: #566175; font-size: .85rem }
code { font-size: .9rem; overflow-wrap: anywhere } .n { text-align: right; white-space: nowrap }
.v { font-weight: 700; width: 3.5rem } .PASS .v { color: #17703a } .FAIL .v { color: #b3161c } .SKIP .v { color: #76808f }
.FAIL td { background: #fdf0f0 } .name { width: 26rem } .reason { overflow-wrap: anywhere }
.total { font-size: 1.1rem } .total b { margin-right: 1rem }
.bars, th:last-child { padding: 0 } .bars { position: relative; width: 26rem; min-width: 16rem } .bars i { position: absolute; left: 0; height: .7rem; top: .55rem; border-radius: 2px }
.worst { background: #b9d3f3 } .median { background: #2463b0 }
.scale { position: relative; height: 1.2rem } .scale b { position: absolute; font-weight: 400; border-left: 1px solid #9aa5b5; padding-left: .25rem; white-space: nowrap }
)css";

}  // namespace

const char* wordOf(Verdict verdict) {
    constexpr const char* kWords[] = {"PASS", "FAIL", "SKIP"};
    return kWords[static_cast<int>(verdict)];
}

std::string lineOf(const Finding& finding, bool coloured) {
    constexpr const char* kColours[] = {"\033[32m", "\033[31m", "\033[90m"};
    constexpr size_t kNameWidth = 42;
    std::string line = finding.name;
    line.resize(std::max(line.size(), kNameWidth), ' ');
    const std::string word = wordOf(finding.verdict);
    return (coloured ? kColours[static_cast<int>(finding.verdict)] + word + "\033[0m" : word) + "  " + line +
           "  " + finding.reason;
}

void Report::add(Finding finding) {
    finding.reason = oneLine(finding.reason);
    findings.push_back(std::move(finding));
}

size_t Report::count(Verdict verdict) const {
    return static_cast<size_t>(
        std::count_if(findings.begin(), findings.end(),
                      [verdict](const Finding& each) { return each.verdict == verdict; }));
}

std::string Report::summary() const {
    return std::to_string(count(Verdict::Pass)) + " passed, " + std::to_string(count(Verdict::Fail)) +
           " failed, " + std::to_string(count(Verdict::Skip)) + " skipped";
}

std::string Report::junit() const {
    const double seconds =
        std::accumulate(findings.begin(), findings.end(), 0.0,
                        [](double sum, const Finding& each) { return sum + each.milliseconds; }) /
        1000;
    std::string xml =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuite name=\"hbbtv-check-middleware\" tests=\"" +
        std::to_string(findings.size()) + "\" failures=\"" + std::to_string(count(Verdict::Fail)) +
        "\" errors=\"0\" skipped=\"" + std::to_string(count(Verdict::Skip)) + "\" time=\"" +
        number(seconds, 3) + "\">\n";
    for (const auto& each : findings) {
        xml += "  <testcase classname=\"" + escaped(each.group) + "\" name=\"" + escaped(each.name) +
               "\" time=\"" + number(each.milliseconds / 1000, 3) + "\">";
        const std::string message = " message=\"" + escaped(each.reason) + "\"/>";
        if (each.verdict == Verdict::Fail)
            xml += "<failure" + message;
        if (each.verdict == Verdict::Skip)
            xml += "<skipped" + message;
        xml += "</testcase>\n";
    }
    return xml + "</testsuite>\n";
}

std::string Report::html(int limitSeconds) const {
    const double limitMs = limitSeconds * 1000.0;
    std::string page = "<!DOCTYPE html>\n<html lang=en><meta charset=utf-8><title>Middleware: " + summary() +
                       "</title>\n<style>" + kStyle +
                       "</style>\n<h1>Check of the middleware</h1>\n<p class=total>";
    for (const auto verdict : {Verdict::Pass, Verdict::Fail, Verdict::Skip})
        page += std::string("<span class=") + wordOf(verdict) + "><b class=v>" + wordOf(verdict) + " " +
                std::to_string(count(verdict)) + "</b></span>";
    // Nobody should have to look for it.
    if (count(Verdict::Fail) > 0) {
        page += "<h2>What has failed</h2>\n<table>\n";
        for (const auto& each : findings)
            page += each.verdict == Verdict::Fail ? rowOf(each) : "";
        page += "</table>\n";
    }
    std::string group;
    for (const auto& each : findings) {
        if (each.group != group)
            page += (group.empty() ? "" : "</table>\n") + ("<h2>" + escaped(each.group)) + "</h2>\n<table>\n";
        group = each.group;
        page += rowOf(each);
    }
    page +=
        "</table>\n<h2>How long the calls took</h2>\n<p>Dark to the median, light to the worst. Each mark is "
        "ten times the one before; the right edge is the limit of " +
        std::to_string(limitSeconds) +
        " s.</p>\n<table>\n<tr><th>Method<th class=n>Calls<th class=n>Median<th class=n>Worst<th><div "
        "class=scale>" +
        ticks(limitMs) + "</div>\n";
    for (const auto& [method, times] : timings)
        page += rowOf(method, times, limitMs);
    return page + "</table>\n</html>\n";
}

}  // namespace Check
