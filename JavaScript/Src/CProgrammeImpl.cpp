#include "JavaScript/Src/CProgrammeImpl.h"

#include <strings.h>

#include <utility>
#include <vector>

#include "IPC/DBUS/Src/DAEBrowserAPIWK_DBus.h"
#include "InjectedBundle/Src/BindingCall.h"
#include "InjectedBundle/gen/js/jiParentalRatingCollection.h"
#include "InjectedBundle/gen/js/jiStringCollection.h"
#include "JavaScript/Src/CParentalRatingCollectionImpl.h"
#include "JavaScript/Src/CStringCollectionImpl.h"

namespace OipfJavaScript {

namespace {

constexpr int32_t kIdTvaCrid = 0;
constexpr int32_t kIdDvbEvent = 1;
// For the receiver a negative number stands for any.
constexpr int32_t kAny = -1;

}  // namespace

std::string CProgrammeImpl::GetLongName() {
    m_status = kUndefined;
    return {};
}

std::string CProgrammeImpl::GetLongDescription() {
    m_status = kUndefined;
    return {};
}

int32_t CProgrammeImpl::GetEpisode() {
    m_status = kUndefined;
    return 0;
}

int32_t CProgrammeImpl::GetTotalEpisodes() {
    m_status = kUndefined;
    return 0;
}

int32_t CProgrammeImpl::GetProgrammeIDType() const {
    return strncasecmp(m_info.programmeId.c_str(), "crid:", 5) == 0 ? kIdTvaCrid : kIdDvbEvent;
}

std::unique_ptr<jiParentalRatingCollection> CProgrammeImpl::GetParentalRating() const {
    auto ratings = MakeBinding<jiParentalRatingCollection>();
    if (m_info.parentalRating != 0)
        ratings->Implementation().AddAge(m_info.parentalRating);
    return ratings;
}

std::unique_ptr<jiStringCollection> CProgrammeImpl::GetSIDescriptors(
    int32_t tag, std::optional<int32_t> tagExtension, std::optional<uint32_t> privateData) const {
    std::vector<std::string> descriptors = CDAEBrowserAPIWK::GetInstance()->GetProgramDescriptors(
        m_cacheId, static_cast<uint16_t>(m_info.eventId), tag, tagExtension.value_or(kAny),
        privateData ? static_cast<int32_t>(*privateData) : kAny);
    if (descriptors.empty())
        return nullptr;
    for (std::string& descriptor : descriptors)
        descriptor = BytesToUtf8(descriptor);
    return MakeBinding<jiStringCollection>(std::move(descriptors));
}

}  // namespace OipfJavaScript
