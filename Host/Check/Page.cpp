// What a page makes of the signals: page.html in an hbbtv-shell, whose console tells the results.
#include <string_view>
#include <utility>

#include "Host/Check/Session.h"

namespace Check {

extern const std::string_view s_page;

using namespace Host;

namespace {

constexpr char kGroup[] = "A page in WebKit";

// The page on the disk, as long as it is shown.
class PageFile : Pinned {
 public:
    PageFile() {
        GErrorSlot error;
        GFileIOStream* stream = nullptr;
        m_file.reset(g_file_new_tmp("hbbtv-check-XXXXXX.html", &stream, error.out()));
        const GObjectHandle<GFileIOStream> opened(stream);
        if (!m_file ||
            !g_output_stream_write_all(g_io_stream_get_output_stream(G_IO_STREAM(stream)), s_page.data(),
                                       s_page.size(), nullptr, nullptr, error.out()))
            throw Failed(std::string("the page cannot be written: ") + error.message());
    }
    ~PageFile() {
        if (m_file)
            g_file_delete(m_file.get(), nullptr, nullptr);
    }

    [[nodiscard]] std::string url() const { return GChars(g_file_get_uri(m_file.get())).get(); }

 private:
    GObjectHandle<GFile> m_file;
};

std::string queryOf(const Session& session) {
    const Options& options = session.options;
    std::string claims;
    for (const auto& interface : session.contract) {
        if (session.has(interface.shortName()))
            claims += (claims.empty() ? "" : ",") + interface.shortName();
    }
    std::string query = "?limit=" + std::to_string(options.limitSeconds);
    for (const auto& [name, value] : {std::pair<const char*, std::string>("claims", claims),
                                      {"media", options.media},
                                      {"stream-event", options.streamEvent}})
        query +=
            std::string("&") + name + "=" + GChars(g_uri_escape_string(value.c_str(), nullptr, FALSE)).get();
    return query;
}

// "... CONSOLE LOG check: PASS A page sees a bind: Channel 1"
bool readFinding(std::string_view line, Finding& finding) {
    constexpr std::string_view kMark = "CONSOLE LOG check: ";
    constexpr size_t kWord = 4;
    const auto begin = line.find(kMark);
    if (begin == std::string_view::npos)
        return false;
    line.remove_prefix(begin + kMark.size());
    const auto end = line.find(": ");
    if (end == std::string_view::npos || end <= kWord)
        return false;
    for (const Verdict verdict : {Verdict::Pass, Verdict::Fail, Verdict::Skip}) {
        if (line.starts_with(wordOf(verdict)))
            finding.verdict = verdict;
    }
    finding.name = line.substr(kWord + 1, end - kWord - 1);
    finding.reason = line.substr(end + 2);
    return true;
}

// Until it has said all it has to say.
std::string show(Session& session) {
    if (session.options.shell.empty())
        throw Skipped("--shell names the hbbtv-shell that shows it");
    const PageFile file;
    const std::string url = file.url() + queryOf(session);
    GErrorSlot error;
    const GObjectHandle<GSubprocess> shell(g_subprocess_new(
        static_cast<GSubprocessFlags>(G_SUBPROCESS_FLAGS_STDOUT_PIPE | G_SUBPROCESS_FLAGS_STDERR_MERGE),
        error.out(), session.options.shell.c_str(), "--session-bus", "--no-receiver", "--exit-after-load",
        "--require-verdict", "--check-limit", "600", url.c_str(), nullptr));
    if (!shell)
        throw Failed(error.message());
    const GObjectHandle<GDataInputStream> output(
        g_data_input_stream_new(g_subprocess_get_stdout_pipe(shell.get())));
    std::string last = "it says nothing";
    int count = 0;
    auto begin = g_get_monotonic_time();
    while (const GChars line{g_data_input_stream_read_line(output.get(), nullptr, nullptr, nullptr)}) {
        Finding finding{kGroup, "", Verdict::Skip, "", 0};
        if (!readFinding(line.get(), finding)) {
            last = line.get();
            continue;
        }
        const auto now = g_get_monotonic_time();
        finding.milliseconds = static_cast<double>(now - std::exchange(begin, now)) / 1000;
        session.tell(std::move(finding));
        ++count;
    }
    g_subprocess_wait(shell.get(), nullptr, nullptr);
    require(last == "verdict: pass" || last == "verdict: fail", last);
    return std::to_string(count) + " checks";
}

}  // namespace

void checkPage(Session& session) {
    session.check(kGroup, "A page is shown", {}, [&] { return show(session); });
}

}  // namespace Check
