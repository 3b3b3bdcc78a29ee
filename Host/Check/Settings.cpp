// What pages read of the receiver, and of its channels.
#include <algorithm>
#include <set>

#include "Host/Check/Session.h"

namespace Check {

using namespace Host;

namespace {

constexpr char kGroup[] = "Settings";
constexpr char kChannels[] = "Channels";
constexpr char kDae[] = "IDAEBrowserAPI";
constexpr char kCache[] = "IJSChannelCache";

std::string capabilities(Middleware& middleware) {
    const std::string xml = stringOf(middleware.ask("IDAEBrowserAPI.GetXmlCapabilities"));
    const auto bad = xml.find_first_of("\"\\\n\r");
    require(bad == std::string::npos,
            "GetXmlCapabilities has a quotation mark, backslash or line break at " + std::to_string(bad));
    const GMarkupParser nothing = {};
    const std::unique_ptr<GMarkupParseContext, GFree<&g_markup_parse_context_unref>> context(
        g_markup_parse_context_new(&nothing, G_MARKUP_TREAT_CDATA_AS_TEXT, nullptr, nullptr));
    GErrorSlot error;
    const bool isXml = g_markup_parse_context_parse(context.get(), xml.data(),
                                                    static_cast<gssize>(xml.size()), error.out()) &&
                       g_markup_parse_context_end_parse(context.get(), error.out());
    require(isXml, std::string("GetXmlCapabilities is no XML: ") + error.message());
    return std::to_string(xml.size()) + " bytes of XML";
}

std::string keyMask(Middleware& middleware) {
    const auto mask = [&] { return unsignedOf(middleware.ask("IDAEBrowserAPI.GetKeyMask")); };
    const auto set = [&](std::uint32_t value) {
        middleware.ask("IDAEBrowserAPI.SetKeyMask", std::to_string(static_cast<std::int32_t>(value)));
        return mask();
    };
    const auto before = mask();
    const auto most = unsignedOf(middleware.ask("IDAEBrowserAPI.GetMaxKeyMask"));
    const auto all = set(most);
    const auto tooMany = set(0x7FFFFFFF);
    const auto none = set(0);
    (void)set(before);
    require(all == most,
            "SetKeyMask of the greatest mask, " + std::to_string(most) + ", gives " + std::to_string(all));
    require((tooMany & ~most) == 0,
            "SetKeyMask is not cut to the greatest mask: GetKeyMask is " + std::to_string(tooMany));
    require(none == 0, "after SetKeyMask of 0, GetKeyMask is " + std::to_string(none));
    require(mask() == before, "the mask before cannot be set again");
    return "greatest mask " + std::to_string(most);
}

std::string list(Session& session) {
    const auto ids = session.channels();
    require(!ids.empty(), "GetChannelList is empty");
    require(std::find(ids.begin(), ids.end(), 0U) == ids.end(), "GetChannelList has the id 0");
    require(std::set(ids.begin(), ids.end()).size() == ids.size(), "GetChannelList has an id twice");
    return std::to_string(ids.size()) + " channels";
}

std::string information(Session& session) {
    constexpr size_t kCcid = 9;
    constexpr size_t kResult = 17;
    std::set<std::string> ccids;
    for (const auto id : session.channels()) {
        const auto info = session.middleware.ask("IJSChannelCache.GetChannelInfo", std::to_string(id));
        const std::string which = "GetChannelInfo of channel " + std::to_string(id);
        require(booleanOf(info, kResult), which + " says that it is not known");
        require(!stringOf(info).empty(), which + " has no name");
        require(ccids.insert(stringOf(info, kCcid)).second,
                which + " has the ccid of another channel, \"" + stringOf(info, kCcid) + "\"");
    }
    const auto none = session.middleware.ask("IJSChannelCache.GetChannelInfo", "0");
    require(!booleanOf(none, kResult), "GetChannelInfo knows channel 0");
    return std::to_string(ccids.size()) + " channels, each with a ccid of its own";
}

std::string balance(Session& session) {
    auto& middleware = session.middleware;
    const auto ids = session.channels();
    require(!ids.empty(), "GetChannelList is empty");
    const std::string id = std::to_string(ids.front());
    constexpr size_t kResult = 17;
    const auto isKnown = [&] {
        return booleanOf(middleware.ask("IJSChannelCache.GetChannelInfo", id), kResult);
    };
    for (int round = 0; round < 2; ++round)
        require(booleanOf(middleware.ask("IJSChannelCache.Retain", id)), "Retain refuses channel " + id);
    middleware.ask("IJSChannelCache.Release", id);
    require(isKnown(), "channel " + id + " was retained twice and released once, and is not known any more");
    middleware.ask("IJSChannelCache.Release", id);
    require(booleanOf(middleware.ask("IJSChannelCache.Retain", id)),
            "channel " + id + " is in the list and cannot be retained anew");
    middleware.ask("IJSChannelCache.Release", id);
    require(!booleanOf(middleware.ask("IJSChannelCache.Retain", "0")), "Retain takes channel 0");
    return "released as often as retained";
}

std::string programmes(Session& session) {
    constexpr size_t kStart = 2;
    constexpr size_t kDuration = 3;
    size_t count = 0;
    for (const auto id : session.channels()) {
        const auto reply = session.middleware.ask("IDAEBrowserAPI.GetProgCollection", std::to_string(id));
        const GVariantHandle collection(g_variant_get_child_value(reply.get(), 0));
        std::uint64_t last = 0;
        for (size_t at = 0; at < g_variant_n_children(collection.get()); ++at, ++count) {
            const GVariantHandle programme(g_variant_get_child_value(collection.get(), at));
            const std::string which =
                "GetProgCollection of channel " + std::to_string(id) + ", programme " + std::to_string(at);
            require(!stringOf(programme).empty(), which + " has no name");
            require(unsignedOf(programme, kDuration) > 0, which + " has no duration");
            require(unsignedOf(programme, kStart) >= last, which + " starts before the one before");
            last = unsignedOf(programme, kStart);
        }
    }
    if (count == 0)
        throw Skipped("no channel has programmes");
    return std::to_string(count) + " programmes, in the order of their times";
}

}  // namespace

void checkSettings(Session& session) {
    auto& middleware = session.middleware;
    session.check(kGroup, "Capabilities are XML for a script", {kDae},
                  [&] { return capabilities(middleware); });
    session.check(kGroup, "The key mask is set and cut", {kDae}, [&] { return keyMask(middleware); });
    session.check(kGroup, "The parental lock is an age", {kDae}, [&] {
        constexpr int kNothingLocked = 255;
        constexpr int kOldest = 99;
        const auto age = signedOf(middleware.ask("IDAEBrowserAPI.GetParentalLockStatus"));
        require((age >= 0 && age <= kOldest) || age == kNothingLocked,
                "GetParentalLockStatus is " + std::to_string(age));
        return std::to_string(age);
    });
    session.check(kGroup, "DRM systems have no blanks", {kDae}, [&] {
        const std::string systems = stringOf(middleware.ask("IDAEBrowserAPI.GetCIPlusDrmType"));
        require(systems.find(' ') == std::string::npos, "GetCIPlusDrmType has blanks: " + systems);
        return systems.empty() ? "none" : systems;
    });
}

void checkChannels(Session& session) {
    session.check(kChannels, "The list has channels", {kDae}, [&] { return list(session); });
    session.check(kChannels, "Each is known, and told apart", {kDae, kCache},
                  [&] { return information(session); });
    session.check(kChannels, "Retain and release balance", {kDae, kCache}, [&] { return balance(session); });
    session.check(kChannels, "Programmes have times in order", {kDae}, [&] { return programmes(session); });
}

}  // namespace Check
