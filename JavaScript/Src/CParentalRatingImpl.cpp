#include "JavaScript/Src/CParentalRatingImpl.h"

#include "CSP/Inc/PCLog.h"

namespace OipfJavaScript {

CParentalRatingImpl::CParentalRatingImpl(const std::string& name, const std::string& scheme, int32_t value,
                                         int32_t labels, const std::string& region)
    : m_name(name), m_scheme(scheme), m_value(value), m_labels(labels), m_region(region) {}

CParentalRatingImpl::CParentalRatingImpl(int32_t age)
    : CParentalRatingImpl(std::to_string(age), kDvbSi, age, 0, "") {}

bool CParentalRatingImpl::HasKnownScheme() {
    if (m_scheme == kDvbSi)
        return true;
    m_status = kUndefined;
    return false;
}

std::string CParentalRatingImpl::GetName() {
    if (m_ausNzMode) {
        HBBTV_LOG_ERROR("CParentalRatingImpl::%s Aus/Nz Mode, Invalid Rating Name", __func__);
        return {};
    }
    return HasKnownScheme() ? m_name : std::string();
}

int32_t CParentalRatingImpl::GetValue() {
    if (!HasKnownScheme())
        return 0;
    // At this priority on the platform, where reading a rating is to be seen in every log.
    HBBTV_LOG_ERROR("%s::Scheme %s Name %s (value %d)", jiParentalRating::ID, m_scheme.c_str(),
                    m_name.c_str(), m_value);
    return m_value;
}

}  // namespace OipfJavaScript
