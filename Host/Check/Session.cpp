#include "Host/Check/Session.h"

#include <algorithm>
#include <utility>

namespace Check {

using namespace Host;

namespace {

GVariantHandle childOf(const GVariantHandle& tuple, size_t at) {
    return GVariantHandle(g_variant_get_child_value(tuple.get(), at));
}

}  // namespace

std::uint32_t unsignedOf(const GVariantHandle& tuple, size_t at) {
    return g_variant_get_uint32(childOf(tuple, at).get());
}

std::int32_t signedOf(const GVariantHandle& tuple, size_t at) {
    return g_variant_get_int32(childOf(tuple, at).get());
}

bool booleanOf(const GVariantHandle& tuple, size_t at) {
    return g_variant_get_boolean(childOf(tuple, at).get()) != FALSE;
}

std::string stringOf(const GVariantHandle& tuple, size_t at) {
    return g_variant_get_string(childOf(tuple, at).get(), nullptr);
}

void require(bool fact, const std::string& reason) {
    if (!fact)
        throw Failed(reason);
}

Player::Player(Session& session, std::string interface, std::string release)
    : m_session(session),
      m_id(session.newPlayer()),
      m_interface(std::move(interface)),
      m_release(std::move(release)) {}

Player::~Player() {
    try {
        ask(m_release);
    } catch (const Failed&) {  // NOLINT(bugprone-empty-catch): Said by the check of that method.
    }
}

GVariantHandle Player::ask(const std::string& method, const std::string& more) {
    return m_session.middleware.ask(m_interface + "." + method, m_id + more);
}

Session::Session(GDBusConnection* bus, const std::vector<Interface>& interfaces, const Options& wanted,
                 std::function<void(const Finding&)> tell)
    : middleware(bus, interfaces, wanted.limitSeconds),
      contract(interfaces),
      options(wanted),
      m_tell(std::move(tell)) {}

Report Session::run() {
    checkNames(*this);
    checkSettings(*this);
    checkChannels(*this);
    checkTelevision(*this);
    checkMedia(*this);
    checkSearch(*this);
    checkMessages(*this);
    checkPage(*this);
    checkMethods(*this);
    checkSignalTypes(*this);
    m_report.timings = middleware.timings();
    return std::move(m_report);
}

void Session::check(const std::string& group, const std::string& name, const std::vector<std::string>& needs,
                    const std::function<std::string()>& look) {
    Finding finding{group, name, Verdict::Pass, "", 0};
    const auto begin = g_get_monotonic_time();
    try {
        for (const auto& need : needs) {
            if (!options.claims(need))
                throw Skipped(need + " is not claimed");
            if (!m_owned.contains(need))
                throw Skipped("nobody owns the name of " + need);
        }
        middleware.forget();
        finding.reason = look();
    } catch (const Skipped& skipped) {
        finding.verdict = Verdict::Skip;
        finding.reason = skipped.what();
    } catch (const Failed& failed) {
        finding.verdict = Verdict::Fail;
        finding.reason = failed.what();
    }
    finding.milliseconds = static_cast<double>(g_get_monotonic_time() - begin) / 1000;
    tell(std::move(finding));
}

void Session::tell(Finding finding) {
    m_report.add(std::move(finding));
    m_tell(m_report.findings.back());
}

std::vector<std::uint32_t> Session::channels() {
    const auto list = childOf(middleware.ask("IDAEBrowserAPI.GetChannelList"), 0);
    std::vector<std::uint32_t> ids;
    for (size_t at = 0; at < g_variant_n_children(list.get()); ++at)
        ids.push_back(unsignedOf(list, at));
    return ids;
}

std::vector<std::uint32_t> Session::watchableChannels() {
    auto ids = channels();
    std::erase_if(ids, [this](std::uint32_t id) {
        constexpr size_t kAuthorised = 10;
        constexpr size_t kLocked = 12;
        constexpr size_t kBlocked = 13;
        const auto info = middleware.ask("IJSChannelCache.GetChannelInfo", std::to_string(id));
        return !booleanOf(info, kAuthorised) || booleanOf(info, kLocked) || booleanOf(info, kBlocked);
    });
    return ids;
}

std::uint32_t Session::currentChannel() {
    const auto current = middleware.ask("IDAEBrowserAPI.CurrentChannel");
    return booleanOf(current, 1) ? unsignedOf(current) : 0;
}

}  // namespace Check
